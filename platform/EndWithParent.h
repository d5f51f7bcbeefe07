#pragma once

#include <sys/types.h>

namespace seldial::platform {

/// Called in a child process before it becomes another program: from here on the child gets SIGTERM
/// as soon as `parent` is gone, however it went; also after it became another program. (On Linux as
/// soon as the parent's thread that forked is gone.) Allocates nothing. False, with errno, when the
/// system refuses or `parent` is gone already.
[[nodiscard]] bool endWithParent(pid_t parent);

}  // namespace seldial::platform
