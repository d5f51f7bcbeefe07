#pragma once

#include <sys/types.h>

namespace seldial {

/// Called in a child process before it becomes another program: asks the system for SIGTERM as soon
/// as the parent's thread that forked is gone, however it went. False, with errno, when the system
/// refuses or `parent` is gone already.
[[nodiscard]] bool endWithParent(pid_t parent);

}  // namespace seldial
