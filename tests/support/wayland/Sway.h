// A private compositor for one test: sway without a screen, gone with the test.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryDirectory.h"

namespace seldial::tests {

/// Once constructed it accepts connections. Throws std::runtime_error when there is no sway on this
/// machine; the text says what to install.
class Sway {
 public:
  /// `configuration` is added to what the tests need.
  explicit Sway(const std::string& configuration = {});

  /// Paths of its sockets.
  [[nodiscard]] std::string display() const { return directory_.path("wayland-1"); }
  [[nodiscard]] std::string ipc() const { return directory_.path("sway.sock"); }

  /// The variables of a session on it, for a ChildProcess.
  [[nodiscard]] std::vector<std::string> environment() const;

  /// Whether programs are told of the socket for commands. Without it, sway is a compositor like
  /// those that give no hot key.
  enum class Ipc { kTold, kHidden };

  /// Sets the same variables in the test's own environment.
  void enter(Ipc ipc = Ipc::kTold) const;

  /// Runs a command of sway; true when it succeeds.
  bool run(const std::string& command) const;

  /// Reads the configuration again, changed to the given one; returns once that is done.
  void reload(const std::string& configuration = {}) const;

  /// Waits until the window of a program has the focus. Its application id ends with `name`,
  /// whatever the case: "zenity" and "org.gnome.Zenity".
  void waitForFocus(const std::string& name) const;

  /// Every connection is lost at once. Returns once it is gone.
  void kill();

 private:
  void configure(const std::string& configuration) const;

  TemporaryDirectory directory_;
  std::unique_ptr<ChildProcess> process_;
};

}  // namespace seldial::tests
