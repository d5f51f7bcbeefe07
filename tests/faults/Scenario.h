// One life of the program on a desktop, with one call that fails: start, command, press and end,
// and what must hold whatever failed.
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

/// A desktop for many lives, one after the other.
struct FaultDesktop {
  XServer server;
  Keyboard keyboard{server.display()};
  XClient editor{server.display()};
};

class Scenario {
 public:
  /// `fault` is the one that `injector` injects, if any.
  /// `mostDescriptors` is what it may have open before it is told to end, if that is known.
  Scenario(FaultDesktop& desktop, FaultInjector& injector, std::optional<Fault> fault = {},
           std::optional<std::size_t> mostDescriptors = {});

  /// Lives through all phases, with expectations of GoogleTest. Without a fault everything works.
  /// With one, the program may end by an error that it states; it may close its incoming socket and
  /// say so; it may lose what the failing call was to bring. Whatever is asked of it afterwards it
  /// does, it leaves no socket, no descriptor and no key behind, and it ends when it is told to.
  void run();

  /// How many descriptors it had open before it ended; nothing where it ended early.
  [[nodiscard]] std::optional<std::size_t> descriptors() const { return descriptors_; }

 private:
  void start();
  void command();
  void press();
  void end();
  void countDescriptors();

  void enter(Phase phase);
  [[nodiscard]] bool forgivable() const;
  [[nodiscard]] bool isAnswered(const std::string& part, bool first);
  [[nodiscard]] bool ask(const std::string& text, const std::string& part, bool first);
  [[nodiscard]] bool hasEnded();
  void expectOrderlyEnd();
  void expectStatedError();
  void expectWordOfClosing();
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
