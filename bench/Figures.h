// The figures of the benchmark, the table that it prints, and what measuring them needs.
#pragma once

#include <string>
#include <vector>

namespace seldial::bench {

/// One line of the table.
struct Row {
  std::string figure;
  std::string ours;
  std::string floor;  ///< the figure of the least program that does the same work
  std::string limit;  ///< what ours is compared to
  bool held = false;
};

// Each measures the program and its floor by turns in the same run, so that a machine that is busy
// with something else is busy for both.
std::vector<Row> roundTrip();
std::vector<Row> dial();
std::vector<Row> start();
std::vector<Row> idle();
std::vector<Row> growth();
std::vector<Row> heldConnections();
std::vector<Row> commandMemory();
/// Its floor is the program without hardening, which the variable SELDIAL_UNHARDENED names.
std::vector<Row> hardening();

void printHeading();
void print(const Row& row);

/// printf into a string of at most 255 characters.
[[gnu::format(printf, 1, 2)]] std::string text(const char* format, ...);

/// The median; 0 if there are no values.
double median(std::vector<double> values);

/// Keeps the calling process, and what it starts meanwhile, on one processor while it lives. What
/// was started before, such as a desktop, runs anywhere.
class OnOneProcessor {
 public:
  OnOneProcessor();
  ~OnOneProcessor();
  OnOneProcessor(const OnOneProcessor&) = delete;
  OnOneProcessor& operator=(const OnOneProcessor&) = delete;
};

}  // namespace seldial::bench
