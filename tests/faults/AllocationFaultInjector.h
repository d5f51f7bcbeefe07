// Makes one allocation of a program fail, whether its own code or a library requested the memory.
#pragma once

#include <optional>

#include "tests/faults/AllocationControl.h"
#include "tests/faults/Faults.h"
#include "tests/support/TemporaryDirectory.h"

namespace seldial::tests {

/// Counts all allocations as "allocation", from before the main function on.
class AllocationFaultInjector final : public FaultInjector {
 public:
  explicit AllocationFaultInjector(const std::optional<Fault>& fault = {});
  ~AllocationFaultInjector() override;
  AllocationFaultInjector(const AllocationFaultInjector&) = delete;
  AllocationFaultInjector& operator=(const AllocationFaultInjector&) = delete;

  [[nodiscard]] std::vector<std::string> command(std::vector<std::string> command) const override {
    return command;
  }
  [[nodiscard]] std::vector<std::string> environment() const override;
  void enter(Phase phase) override { control_->phase = phase; }
  [[nodiscard]] bool hasInjected() const override { return control_->injected; }
  [[nodiscard]] std::map<std::pair<Phase, std::string>, int> counts() const override;

 private:
  const TemporaryFile file_{std::string(sizeof(AllocationControl), '\0')};
  AllocationControl* control_;
};

}  // namespace seldial::tests
