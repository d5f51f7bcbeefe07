// What the kernel tells of a process, this one unless another is named.
#pragma once

#include <sys/types.h>
#include <unistd.h>

#include <cstddef>
#include <string>

namespace seldial::tests {

/// A number from /proc/PID/status, for example "Threads" or "RssAnon" (in kB); -1 where the process
/// is gone.
long statusValue(const std::string& key, pid_t process = getpid());

/// Lets this process, and those that it starts from now on, have that many descriptors. Throws
/// where the system allows it fewer.
void allowDescriptors(std::size_t count);

std::size_t openDescriptors(pid_t process = getpid());
std::size_t runningThreads(pid_t process = getpid());

}  // namespace seldial::tests
