// Measures the program and its floors and prints one table. Arguments select figures by name;
// without arguments, all are measured. The exit status is 0 if all could be measured, even if a
// limit was exceeded.
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "bench/Figures.h"

namespace {

struct Figure {
  const char* name;
  std::vector<seldial::bench::Row> (*measure)();
};

constexpr Figure kFigures[] = {
    {"roundtrip", &seldial::bench::roundTrip},   {"dial", &seldial::bench::dial},
    {"start", &seldial::bench::start},           {"idle", &seldial::bench::idle},
    {"growth", &seldial::bench::growth},         {"held", &seldial::bench::heldConnections},
    {"command", &seldial::bench::commandMemory}, {"hardening", &seldial::bench::hardening},
};

bool isChosen(const std::string& name, const std::vector<std::string>& chosen) {
  bool found = chosen.empty();
  for (const auto& one : chosen) found = found || one == name;
  return found;
}

bool measureAndPrint(const Figure& figure) {
  try {
    for (const auto& row : figure.measure()) print(row);
    return true;
  } catch (const std::exception& failure) {
    std::printf("%s: could not be measured: %s\n", figure.name, failure.what());
    return false;
  }
}

}  // namespace

int main(int argc, char* argv[]) {
  const std::vector<std::string> chosen(argv + 1, argv + argc);
  bool complete = true;
  seldial::bench::printHeading();
  for (const auto& figure : kFigures) {
    if (isChosen(figure.name, chosen)) complete = measureAndPrint(figure) && complete;
  }
  return complete ? 0 : 1;
}
