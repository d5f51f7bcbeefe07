#include "bench/Figures.h"

#include <sched.h>

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <cstdio>

namespace seldial::bench {
namespace {

void printLine(const char* figure, const char* ours, const char* floor, const char* limit,
               const char* verdict) {
  std::printf("%-50s %18s %14s  %-22s %s\n", figure, ours, floor, limit, verdict);
  std::fflush(stdout);
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

std::string text(const char* format, ...) {
  char buffer[256];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(buffer, sizeof buffer, format, arguments);
  va_end(arguments);
  return buffer;
}

double median(std::vector<double> values) {
  if (values.empty()) return 0;
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

void printHeading() {
  printLine("figure", "ours", "floor", "limit", "verdict");
}

void print(const Row& row) {
  printLine(row.figure.c_str(), row.ours.c_str(), row.floor.c_str(), row.limit.c_str(),
            row.held ? "held" : "MISSED");
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
