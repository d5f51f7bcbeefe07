#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace seldial::bench {

/// Prints one line for each figure: the library's median, the median of the bare calls, and how
/// many times as long the library takes. Figures are told apart by ", library" and ", bare" in the
/// names of their benchmarks.
class Ratios final : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& context) override;
  void ReportRuns(const std::vector<Run>& runs) override;
  void Finalize() override;

  /// Whether every benchmark ran to its end.
  [[nodiscard]] bool complete() const { return complete_; }

 private:
  /// One side of a figure, of each repetition: in seconds, and as it is shown.
  struct Side {
    std::vector<double> seconds;
    std::vector<double> shown;
  };
  struct Figure {
    std::string name;
    std::pair<std::int64_t, std::int64_t> place;  ///< among the benchmarks as they are registered
    std::string unit;
    Side library;
    Side bare;
  };

  Figure& figure(const std::string& name);

  std::vector<Figure> figures_;
  bool complete_ = true;
};

}  // namespace seldial::bench
