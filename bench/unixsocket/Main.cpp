// Measures the socket library against bare system calls and prints one table. Everything runs on
// one processor, so that a figure shows the work done and not its distribution.
#include <benchmark/benchmark.h>

#include "bench/Figures.h"
#include "bench/unixsocket/Ratios.h"

int main(int argc, char* argv[]) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  const seldial::bench::OnOneProcessor pinned;
  seldial::bench::Ratios ratios;
  benchmark::RunSpecifiedBenchmarks(&ratios);
  return ratios.complete() ? 0 : 1;
}
