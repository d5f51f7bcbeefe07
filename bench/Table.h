// The one table that the benchmark prints.
#pragma once

#include <string>
#include <vector>

namespace seldial::bench {

struct Row {
  std::string figure;
  std::string ours;
  std::string floor;
  std::string limit;  ///< what ours is held against
  bool held = false;
};

/// printf into a string.
[[gnu::format(printf, 1, 2)]] std::string text(const char* format, ...);

/// The middle one; of an empty list 0.
double median(std::vector<double> values);

void printHeading();
void print(const Row& row);

}  // namespace seldial::bench
