// The data shared by a test and the preloaded FailingMalloc.cpp, in a file that both map.
#pragma once

#include <atomic>

namespace seldial::tests {

/// The environment variable that names the file.
inline constexpr const char* kAllocationControlVariable = "SELDIAL_ALLOCATION_CONTROL";

struct AllocationControl {
  static constexpr int kPhases = 4;

  std::atomic<int> phase;
  std::atomic<long> counts[kPhases];  ///< allocations made in each phase
  int failingPhase;                   ///< -1: none fails
  long failingOccurrence;             ///< from 0 on
  std::atomic<bool> injected;
};

}  // namespace seldial::tests
