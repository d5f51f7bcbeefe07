// The calls of the program that fail, and the interface by which a test makes them fail.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace seldial::tests {

/// The phases of the program, in order.
enum Phase { kStart, kCommand, kPress, kEnd };

/// Makes one call fail: number `occurrence`, counted from 0, of the calls of that name in that
/// phase.
struct Fault {
  Phase phase = kStart;
  std::string name;  ///< of a system call, or "allocation"
  int occurrence = 0;
  int error = 0;  ///< errno
};

/// Serves one run of the program.
class FaultInjector {
 public:
  FaultInjector() = default;
  virtual ~FaultInjector() = default;
  FaultInjector(const FaultInjector&) = delete;
  FaultInjector& operator=(const FaultInjector&) = delete;

  /// The command line and the added environment that run `command` under this injector.
  [[nodiscard]] virtual std::vector<std::string> command(
      std::vector<std::string> command) const = 0;
  [[nodiscard]] virtual std::vector<std::string> environment() const = 0;

  virtual void enter(Phase phase) = 0;
  [[nodiscard]] virtual bool hasInjected() const = 0;

  /// How often each call was made so far, by phase and name.
  [[nodiscard]] virtual std::map<std::pair<Phase, std::string>, int> counts() const = 0;
};

}  // namespace seldial::tests
