// A private X server for one test: Xvfb on a display number of its own, gone with the test.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/support/ChildProcess.h"

namespace seldial::tests {

/// Once constructed the server accepts connections. Throws std::runtime_error when there is no
/// Xvfb on this machine; the text says what to install.
class XServer {
 public:
  /// `arguments` are added to the server's own, for example {"-extension", "XTEST"}.
  explicit XServer(const std::vector<std::string>& arguments = {});

  /// What DISPLAY has to be, ":7".
  [[nodiscard]] const std::string& display() const { return display_; }

  /// "DISPLAY=:7", for the environment of a ChildProcess.
  [[nodiscard]] std::string environment() const { return "DISPLAY=" + display_; }

  /// Runs a program on this server to its end and returns its exit status.
  int run(std::vector<std::string> command) const;

  /// Every connection is lost at once, as when the user's session ends. Returns once it is gone.
  void kill();

  /// It answers nobody until thaw(); requests wait in its sockets.
  void freeze();
  void thaw();

 private:
  std::unique_ptr<ChildProcess> process_;
  std::string display_;
};

}  // namespace seldial::tests
