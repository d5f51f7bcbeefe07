// A private compositor for one test: headless sway.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryDirectory.h"

namespace seldial::tests {

/// After construction it accepts connections. Throws std::runtime_error if sway is not installed;
/// the text says what to install.
class Sway {
 public:
  /// `configuration` is added to the configuration that all tests need.
  explicit Sway(const std::string& configuration = {});

  /// Paths of its sockets.
  [[nodiscard]] std::string display() const { return directory_.path("wayland-1"); }
  [[nodiscard]] std::string ipc() const { return directory_.path("sway.sock"); }

  /// The environment variables of a session on it, for a ChildProcess.
  [[nodiscard]] std::vector<std::string> environment() const;

  /// Whether programs get the path of the IPC socket. Without it, sway behaves like a compositor
  /// without hot keys for programs.
  enum class Ipc { kInEnvironment, kHidden };

  /// Sets the same variables in the test's own environment.
  void enter(Ipc ipc = Ipc::kInEnvironment) const;

  /// Runs a command of sway; true when it succeeds.
  bool run(const std::string& command) const;

  /// Replaces and reloads the configuration; returns when that is done.
  void reload(const std::string& configuration = {}) const;

  /// Waits until the window of a program has the focus. Its application ID ends with `name`,
  /// regardless of case: "zenity" and "org.gnome.Zenity".
  void waitForFocus(const std::string& name) const;

  /// Kills sway, which closes every connection at once. Returns once it is gone.
  void kill();

 private:
  void configure(const std::string& configuration) const;

  TemporaryDirectory directory_;
  std::unique_ptr<ChildProcess> process_;
};

}  // namespace seldial::tests
