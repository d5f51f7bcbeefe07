// What the kernel reports about a process; by default about the calling process.
#pragma once

#include <sys/types.h>
#include <unistd.h>

#include <cstddef>
#include <string>

namespace seldial::tests {

/// A number from /proc/PID/status, for example "Threads" or "RssAnon" (in kB); -1 if the process is
/// gone.
long statusValue(const std::string& key, pid_t process = getpid());

/// Raises the descriptor limit of this process and of those that it starts from now on. Throws if
/// the system allows fewer.
void allowDescriptors(std::size_t count);

std::size_t openDescriptors(pid_t process = getpid());
std::size_t runningThreads(pid_t process = getpid());

}  // namespace seldial::tests
