// Small services that Linux and macOS provide in different ways.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <string>

namespace seldial::platform {

/// Fills `bytes` with unpredictable random bytes from the kernel, at most 256. They differ between
/// the two processes of a fork(). False when the kernel has none. Any thread.
[[nodiscard]] bool fillWithRandom(void* bytes, std::size_t size);

/// The system's text for an errno value. Any thread, which std::strerror() does not promise.
[[nodiscard]] std::string errorText(int number);

/// The path of the running executable with all symbolic links resolved; empty when unknown.
[[nodiscard]] std::string executablePath();

/// Called in a child process between fork() and exec(): makes the child get SIGTERM when the thread
/// of `parent` that forked it ends, also after exec(). Allocates nothing. False, with errno, when
/// the system refuses or `parent` is gone already. On macOS, which has no such request, it does
/// nothing and returns true.
[[nodiscard]] bool endWithParent(pid_t parent);

/// The program that opens a URI in the application that the user has chosen for it.
[[nodiscard]] const char* uriOpener();

}  // namespace seldial::platform
