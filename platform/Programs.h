// What a program that starts another one needs from its system.
#pragma once

#include <sys/types.h>

#include <string>

namespace seldial::platform {

/// The path of the running program's file, without links; empty where the system does not tell.
[[nodiscard]] std::string executablePath();

/// Called in a child process before exec: from then on the child gets SIGTERM when the thread of
/// `parent` that forked ends, however it ends. Allocates nothing. False, with errno, when the
/// system refuses or `parent` is gone already. On macOS, which has no such request, it does nothing
/// and returns true.
[[nodiscard]] bool endWithParent(pid_t parent);

}  // namespace seldial::platform
