// One run of the program on a desktop, with one failing call: start, command, press and end, and
// the checks that must hold whatever has failed.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/faults/Faults.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Sockets.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/desktop/Keyboard.h"
#include "tests/support/desktop/XClient.h"
#include "tests/support/desktop/XServer.h"

namespace seldial::tests {

/// A desktop for many runs, one after the other.
struct FaultDesktop {
  XServer server;
  Keyboard keyboard{server.display()};
  XClient editor{server.display()};
};

class Scenario {
 public:
  /// `fault` is the one that `injector` injects, if any. `mostDescriptors` is the limit for its
  /// open descriptors before it is told to end, if known.
  Scenario(FaultDesktop& desktop, FaultInjector& injector, std::optional<Fault> fault = {},
           std::optional<std::size_t> mostDescriptors = {});

  /// Runs through all phases, with GoogleTest expectations. Without a fault everything works. With
  /// one, the program may end with an error that it reports; it may close its incoming socket and
  /// report that; it may lose the result of the failing call. It performs every later request,
  /// leaves no socket, no descriptor and no key behind, and ends when it is told to.
  void run();

  /// How many descriptors it had open before it ended; nothing if it ended early.
  [[nodiscard]] std::optional<std::size_t> descriptors() const { return descriptors_; }

 private:
  void start();
  void command();
  void press();
  void end();
  void countDescriptors();

  void enter(Phase phase);
  [[nodiscard]] bool mayFail() const;
  [[nodiscard]] bool isAnswered(const std::string& part, bool first);
  [[nodiscard]] bool ask(const std::string& text, const std::string& part, bool first);
  [[nodiscard]] bool hasEnded();
  void expectOrderlyEnd();
  void expectStatedError();
  void expectCloseMessage();
  [[nodiscard]] bool writeFails() const;
  void expectKeysUp();

  FaultDesktop& desktop_;
  FaultInjector& injector_;
  const std::optional<Fault> fault_;
  const std::optional<std::size_t> mostDescriptors_;
  const TemporaryDirectory directory_;
  const std::string in_ = directory_.path("in");
  const std::string out_ = directory_.path("out");
  const UcListener client_{out_};
  std::optional<ChildProcess> process_;
  std::vector<std::string> messages_;
  Phase phase_ = kStart;
  bool ended_ = false;
  bool listening_ = false;
  bool hasHotKey_ = false;
  std::optional<std::size_t> descriptors_;
};

}  // namespace seldial::tests
