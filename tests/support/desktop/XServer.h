// A private X server for one test: Xvfb on its own display number.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/support/ChildProcess.h"

namespace seldial::tests {

/// After construction the server accepts connections. Throws std::runtime_error if Xvfb is not
/// installed; the text says what to install.
class XServer {
 public:
  /// `arguments` are added to the server's own, for example {"-extension", "XTEST"}.
  explicit XServer(const std::vector<std::string>& arguments = {});
  ~XServer();
  XServer(const XServer&) = delete;
  XServer& operator=(const XServer&) = delete;

  /// The value for DISPLAY, such as ":7".
  [[nodiscard]] const std::string& display() const { return display_; }

  /// "DISPLAY=:7", for the environment of a ChildProcess.
  [[nodiscard]] std::string environment() const { return "DISPLAY=" + display_; }

  /// Runs a program on this server to its end and returns its exit status.
  int run(std::vector<std::string> command) const;

  /// Kills the server, which closes every connection at once, as at the end of the session. Returns
  /// once it is gone.
  void kill();

  /// Stops the server until thaw(): it answers no client, and requests wait in its sockets.
  void freeze();
  void thaw();

 private:
  std::unique_ptr<ChildProcess> process_;
  std::string display_;
};

}  // namespace seldial::tests
