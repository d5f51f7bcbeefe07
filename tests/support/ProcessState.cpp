#include "tests/support/ProcessState.h"

#include <sys/resource.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace seldial::tests {

long statusValue(const std::string& key, pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/status");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with(key + ":")) return std::stol(line.substr(key.size() + 1));
  }
  return -1;
}

void allowDescriptors(std::size_t count) {
  rlimit limit{};
  getrlimit(RLIMIT_NOFILE, &limit);
  if (limit.rlim_cur >= count) return;
  limit.rlim_cur = count;
  if (setrlimit(RLIMIT_NOFILE, &limit) != 0) {
    throw std::runtime_error("this test needs " + std::to_string(count) +
                             " open files; the hard limit is " + std::to_string(limit.rlim_max));
  }
}

std::size_t openDescriptors(pid_t process) {
  const std::filesystem::directory_iterator directory("/proc/" + std::to_string(process) + "/fd");
  return static_cast<std::size_t>(std::distance(begin(directory), end(directory)));
}

std::size_t runningThreads(pid_t process) {
  return static_cast<std::size_t>(statusValue("Threads", process));
}

}  // namespace seldial::tests
