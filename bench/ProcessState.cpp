#include "bench/ProcessState.h"

#include <sched.h>

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <thread>

namespace seldial::bench {
namespace {

std::filesystem::path directoryOf(pid_t process) {
  return "/proc/" + std::to_string(process);
}

/// The sum of the numbers in lines that begin with `name`.
long sumOf(const std::filesystem::path& file, const std::string& name) {
  std::ifstream stream(file);
  long sum = 0;
  for (std::string line; std::getline(stream, line);) {
    if (line.compare(0, name.size(), name) == 0) sum += std::stol(line.substr(name.size()));
  }
  return sum;
}

cpu_set_t allProcessors() {
  static const cpu_set_t all = [] {
    cpu_set_t set;
    CPU_ZERO(&set);
    sched_getaffinity(0, sizeof set, &set);
    return set;
  }();
  return all;
}

}  // namespace

double uniqueMemory(pid_t process) {
  const auto file = directoryOf(process) / "smaps_rollup";
  const auto kilobytes = sumOf(file, "Private_Clean:") + sumOf(file, "Private_Dirty:");
  if (kilobytes == 0) throw std::runtime_error("a measured program is gone");
  return static_cast<double>(kilobytes) * 1024;
}

int threadCount(pid_t process) {
  return static_cast<int>(sumOf(directoryOf(process) / "status", "Threads:"));
}

long wakeUps(pid_t process) {
  long sum = 0;
  for (const auto& task : std::filesystem::directory_iterator(directoryOf(process) / "task")) {
    const auto file = task.path() / "status";
    sum += sumOf(file, "voluntary_ctxt_switches:") + sumOf(file, "nonvoluntary_ctxt_switches:");
  }
  return sum;
}

void settle(pid_t process) {
  for (long before = -1; before != wakeUps(process);) {
    before = wakeUps(process);
    std::this_thread::sleep_for(std::chrono::seconds(3));
  }
}

OnOneProcessor::OnOneProcessor() {
  const auto all = allProcessors();
  std::size_t last = CPU_SETSIZE - 1;
  while (last > 0 && !CPU_ISSET(last, &all)) --last;
  cpu_set_t one;
  CPU_ZERO(&one);
  CPU_SET(last, &one);
  sched_setaffinity(0, sizeof one, &one);
}

OnOneProcessor::~OnOneProcessor() {
  const auto all = allProcessors();
  sched_setaffinity(0, sizeof all, &all);
}

}  // namespace seldial::bench
