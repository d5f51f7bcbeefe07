#include "bench/Table.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

namespace seldial::bench {
namespace {

void printLine(const char* figure, const char* ours, const char* floor, const char* limit,
               const char* verdict) {
  std::printf("%-50s %18s %14s  %-22s %s\n", figure, ours, floor, limit, verdict);
  std::fflush(stdout);
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

}  // namespace seldial::bench
