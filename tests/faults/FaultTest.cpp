// Makes every system call and every allocation of the program fail once, in each phase of its life.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "tests/faults/AllocationFaultInjector.h"
#include "tests/faults/Scenario.h"
#include "tests/faults/SystemCallFaultInjector.h"
#include "tests/faults/SystemCallTable.h"

namespace seldial::tests {
namespace {

/// Whether to try every error of every call and every allocation, which takes long, instead of only
/// the first error and a sample of the allocations.
bool exhaustive() {
  return std::getenv("SELDIAL_ALL_FAULTS") != nullptr;
}

constexpr int kSampledAllocations = 25;  ///< of each phase

class Faults : public testing::TestWithParam<Phase> {
 protected:
  static void SetUpTestSuite() { desktop = std::make_unique<FaultDesktop>(); }
  static void TearDownTestSuite() { desktop.reset(); }

  /// Runs the program once without a fault; returns how often each call was made.
  template <class Injector>
  std::map<std::pair<Phase, std::string>, int> reference() {
    Injector injector;
    Scenario life(*desktop, injector);
    life.run();
    descriptors = life.descriptors();
    EXPECT_TRUE(descriptors);
    return injector.counts();
  }

  template <class Injector>
  void inject(const Fault& fault) {
    const char* const only = std::getenv("SELDIAL_FAULT");  // "writev 3": that one alone
    if (only != nullptr && only != fault.name + " " + std::to_string(fault.occurrence)) return;
    SCOPED_TRACE(fault.name + " number " + std::to_string(fault.occurrence) + ": " +
                 std::strerror(fault.error));
    Injector injector(fault);
    Scenario life(*desktop, injector, fault, descriptors);
    try {
      life.run();
    } catch (const std::exception& error) {
      ADD_FAILURE() << error.what();
    }
  }

  static std::unique_ptr<FaultDesktop> desktop;
  std::optional<std::size_t> descriptors;  ///< of the program that lived without a fault
};

std::unique_ptr<FaultDesktop> Faults::desktop;

TEST_P(Faults, EachSystemCallFails) {
  const auto counts = reference<SystemCallFaultInjector>();
  for (const auto& call : systemCallTable()) {
    const auto count = counts.find({GetParam(), call.name});
    if (count == counts.end()) continue;
    const auto errors =
        exhaustive() ? call.errors.size() : std::min<std::size_t>(1, call.errors.size());
    for (int occurrence = 0; occurrence < count->second; ++occurrence) {
      for (std::size_t i = 0; i < errors; ++i) {
        inject<SystemCallFaultInjector>({GetParam(), call.name, occurrence, call.errors[i]});
      }
    }
  }
}

TEST_P(Faults, EachAllocationFails) {
  const int count = reference<AllocationFaultInjector>()[{GetParam(), "allocation"}];
  const int step = exhaustive() ? 1 : std::max(1, count / kSampledAllocations);
  for (int occurrence = 0; occurrence < count; occurrence += step) {
    inject<AllocationFaultInjector>({GetParam(), "allocation", occurrence, ENOMEM});
  }
}

std::string nameOf(const testing::TestParamInfo<Phase>& phase) {
  static constexpr const char* kNames[] = {"AtStart", "AtACommand", "AtAPress", "AtTheEnd"};
  return kNames[phase.param];
}

INSTANTIATE_TEST_SUITE_P(Program, Faults, testing::Values(kStart, kCommand, kPress, kEnd), nameOf);

}  // namespace
}  // namespace seldial::tests
