// The figures of the benchmark, the table that it prints, and helpers for measuring.
#pragma once

#include <string>
#include <vector>

namespace seldial::bench {

/// One line of the table.
struct Row {
  std::string figure;
  std::string ours;
  std::string floor;  ///< the figure of the minimal program that does the same work
  std::string limit;  ///< the limit for our figure
  bool held = false;
};

// Each function measures the program and its floor alternately in the same run, so that other load
// on the machine affects both.
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

/// Pins the calling process, and the processes that it starts meanwhile, to one processor for the
/// lifetime of the object. Processes started before, such as a desktop, are not pinned.
class OnOneProcessor {
 public:
  OnOneProcessor();
  ~OnOneProcessor();
  OnOneProcessor(const OnOneProcessor&) = delete;
  OnOneProcessor& operator=(const OnOneProcessor&) = delete;
};

}  // namespace seldial::bench
