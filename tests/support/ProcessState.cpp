#include "tests/support/ProcessState.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace seldial::tests {

long statusValue(const std::string& key, pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/status");
  for (std::string line; std::getline(file, line);) {
    if (line.rfind(key + ":", 0) == 0) return std::stol(line.substr(key.size() + 1));
  }
  return -1;
}

std::size_t openDescriptors(pid_t process) {
  const std::filesystem::directory_iterator directory("/proc/" + std::to_string(process) + "/fd");
  return static_cast<std::size_t>(std::distance(begin(directory), end(directory)));
}

std::size_t runningThreads(pid_t process) {
  return static_cast<std::size_t>(statusValue("Threads", process));
}

}  // namespace seldial::tests
