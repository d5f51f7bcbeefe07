#include "bench/unixsocket/Ratios.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "bench/Figures.h"

namespace seldial::bench {
namespace {

const std::string kLibrary = ", library";
const std::string kBare = ", bare";

using Run = benchmark::BenchmarkReporter::Run;

double secondsOf(const Run& run) {
  return run.real_accumulated_time / static_cast<double>(run.iterations);
}

/// Empty if the run succeeded.
template <class AnyRun>
std::string errorOf(const AnyRun& run) {
  if constexpr (requires { run.skip_message; }) {  // since version 1.8 of the library
    return run.skipped ? run.skip_message : "";
  } else {
    return run.error_occurred ? run.error_message : "";
  }
}

/// The displayed form of a figure: a rate if the benchmark counts something, otherwise a time.
std::pair<double, std::string> displayedFigure(const Run& run) {
  const auto& counters = run.counters;
  if (const auto bytes = counters.find("bytes_per_second"); bytes != counters.end()) {
    return {bytes->second.value / 1e6, "MB/s"};
  }
  if (const auto items = counters.find("items_per_second"); items != counters.end()) {
    return {items->second.value / 1e3, "thousand/s"};
  }
  return {secondsOf(run) * 1e6, "us"};
}

void printLine(const std::string& figure, const std::string& library, const std::string& bare,
               const std::string& ratio) {
  std::printf("%-48s %18s %18s %6s\n", figure.c_str(), library.c_str(), bare.c_str(),
              ratio.c_str());
}

/// "bytes, library/fragment:256/real_time" is "bytes, fragment:256".
std::string figureName(std::string name, const std::string& side) {
  name.erase(name.find(side), side.size());
  for (const std::string time : {"/real_time", "/manual_time"}) {
    if (name.ends_with(time)) name.erase(name.size() - time.size());
  }
  if (const auto argument = name.find('/'); argument != std::string::npos) {
    name.replace(argument, 1, ", ");
  }
  return name;
}

}  // namespace

bool Ratios::ReportContext(const Context& /*context*/) {
  printLine("median of", "library", "bare calls", "ratio");
  return true;
}

Ratios::Figure& Ratios::figure(const std::string& name) {
  for (auto& known : figures_) {
    if (known.name == name) return known;
  }
  figures_.push_back({name, {}, {}, {}, {}});
  return figures_.back();
}

void Ratios::ReportRuns(const std::vector<Run>& runs) {
  for (const auto& run : runs) {
    if (const auto error = errorOf(run); !error.empty()) {
      complete_ = false;
      std::fprintf(stderr, "%s: %s\n", run.benchmark_name().c_str(), error.c_str());
    } else if (run.run_type == Run::RT_Iteration) {
      const std::string name = run.run_name.str();
      const bool ofLibrary = name.find(kLibrary) != std::string::npos;
      auto& of = figure(figureName(name, ofLibrary ? kLibrary : kBare));
      auto& side = ofLibrary ? of.library : of.bare;
      const auto [shown, unit] = displayedFigure(run);
      side.seconds.push_back(secondsOf(run));
      side.shown.push_back(shown);
      of.unit = unit;
      of.place = std::max(of.place, {run.family_index, run.per_family_instance_index});
    }
  }
}

void Ratios::Finalize() {
  std::sort(figures_.begin(), figures_.end(),
            [](const Figure& one, const Figure& other) { return one.place < other.place; });
  for (const auto& [name, place, unit, library, bare] : figures_) {
    printLine(name, text("%.1f %s", median(library.shown), unit.c_str()),
              text("%.1f %s", median(bare.shown), unit.c_str()),
              text("%.2f", median(library.seconds) / median(bare.seconds)));
  }
}

}  // namespace seldial::bench
