#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace seldial::bench {

/// Prints one line per figure: the median of the library, the median of the bare calls, and their
/// ratio. The names of the benchmarks contain ", library" or ", bare".
class Ratios final : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& context) override;
  void ReportRuns(const std::vector<Run>& runs) override;
  void Finalize() override;

  /// Whether every benchmark ran to its end.
  [[nodiscard]] bool complete() const { return complete_; }

 private:
  /// One side of a figure, for each repetition: in seconds, and as displayed.
  struct Side {
    std::vector<double> seconds;
    std::vector<double> shown;
  };
  struct Figure {
    std::string name;
    std::pair<std::int64_t, std::int64_t> place;  ///< in the order of registration
    std::string unit;
    Side library;
    Side bare;
  };

  Figure& figure(const std::string& name);

  std::vector<Figure> figures_;
  bool complete_ = true;
};

}  // namespace seldial::bench
