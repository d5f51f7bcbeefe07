// Makes chosen system calls of a program fail, whether its own code or a library makes them.
#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "tests/faults/Faults.h"
#include "tests/support/Sockets.h"
#include "tests/support/TemporaryDirectory.h"

struct seccomp_notif;

namespace seldial::tests {

/// Counts the program's calls from the beginning of its main function on.
class SystemCallFaultInjector final : public FaultInjector {
 public:
  explicit SystemCallFaultInjector(std::optional<Fault> fault = {});
  ~SystemCallFaultInjector() override;
  SystemCallFaultInjector(const SystemCallFaultInjector&) = delete;
  SystemCallFaultInjector& operator=(const SystemCallFaultInjector&) = delete;

  [[nodiscard]] std::vector<std::string> command(std::vector<std::string> command) const override;
  [[nodiscard]] std::vector<std::string> environment() const override { return {}; }
  void enter(Phase phase) override;
  [[nodiscard]] bool hasInjected() const override;
  [[nodiscard]] std::map<std::pair<Phase, std::string>, int> counts() const override;

 private:
  void run();
  [[nodiscard]] int receiveListener() const;
  void serve(int listener);
  /// The error with which the call must fail, or 0.
  int answer(const seccomp_notif& asked);

  const std::optional<Fault> fault_;
  const TemporaryDirectory directory_;
  const std::string path_ = directory_.path("channel");
  const Peer channel_ = Peer::listeningAt(path_);
  const int stop_;

  mutable std::mutex mutex_;  ///< guards everything below
  bool counting_ = false;
  bool injected_ = false;
  Phase phase_ = kStart;
  std::map<std::pair<Phase, std::string>, int> counts_;

  std::thread thread_;
};

}  // namespace seldial::tests
