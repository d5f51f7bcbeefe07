#include "tests/faults/AllocationFaultInjector.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <stdexcept>

namespace seldial::tests {

AllocationFaultInjector::AllocationFaultInjector(const std::optional<Fault>& fault) {
  const int descriptor = open(file_.path().c_str(), O_RDWR | O_CLOEXEC);
  void* const memory =
      mmap(nullptr, sizeof *control_, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
  close(descriptor);
  if (memory == MAP_FAILED) throw std::runtime_error("no shared memory");
  control_ = static_cast<AllocationControl*>(memory);
  control_->failingPhase = fault ? static_cast<int>(fault->phase) : -1;
  control_->failingOccurrence = fault ? fault->occurrence : 0;
}

AllocationFaultInjector::~AllocationFaultInjector() {
  munmap(control_, sizeof *control_);
}

std::vector<std::string> AllocationFaultInjector::environment() const {
  return {"LD_PRELOAD=" SELDIAL_FAILING_MALLOC, kAllocationControlVariable + ("=" + file_.path())};
}

std::map<std::pair<Phase, std::string>, int> AllocationFaultInjector::counts() const {
  std::map<std::pair<Phase, std::string>, int> result;
  for (const Phase phase : {kStart, kCommand, kPress, kEnd}) {
    result[{phase, "allocation"}] = static_cast<int>(control_->counts[phase]);
  }
  return result;
}

}  // namespace seldial::tests
