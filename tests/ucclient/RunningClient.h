// The client as a user starts it, with the dialer from the same build.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryDirectory.h"

namespace seldial {

/// Its standard error is merged into its standard output. Its sockets are in a directory of the
/// test.
class RunningClient {
 public:
  /// `environment` ("NAME=value") specifies the desktop; by default there is none. `path` is the
  /// PATH, `bus` the address of the session bus.
  explicit RunningClient(const std::vector<std::string>& arguments,
                         const std::string& environment = "DISPLAY=",
                         const std::string& path = std::getenv("PATH"),
                         const std::string& bus = "disabled:")
      : environment_{environment,
                     "PATH=" + path,
                     "DBUS_SESSION_BUS_ADDRESS=" + bus,
                     "XDG_RUNTIME_DIR=" + directory_.path(""),
                     "XDG_CONFIG_HOME=/nowhere",
                     "XDG_SESSION_TYPE=x11"},
        process_(commandLine(arguments), environment_, {}, kStreams) {}

  /// Runs another client command, such as "status". Returns its output, with a line for the exit
  /// status unless that is 0.
  [[nodiscard]] std::string outputOf(const std::vector<std::string>& arguments,
                                     const std::vector<std::string>& variables = {}) const {
    auto environment = environment_;
    environment.insert(environment.end(), variables.begin(), variables.end());
    tests::ChildProcess command(commandLine(arguments), environment, {}, kStreams);
    std::string output;
    for (const std::string& line : command.restOfLines()) output += line + "\n";
    const int status = command.wait();
    return output + (status == 0 ? "" : "status " + std::to_string(status) + "\n");
  }

  void expectLine(const std::string& line) { EXPECT_EQ(process_.readLine(), line); }

  [[nodiscard]] tests::ChildProcess& process() { return process_; }

  /// The socket on which it answers requests.
  [[nodiscard]] std::string socket() const { return directory_.path("seldial-uc"); }

  /// The directory of its sockets.
  [[nodiscard]] std::string directory() const { return directory_.path(""); }

  /// Whether it has left nothing behind.
  [[nodiscard]] bool directoryIsEmpty() const {
    return std::filesystem::is_empty(directory_.path(""));
  }

 private:
  static std::vector<std::string> commandLine(const std::vector<std::string>& arguments) {
    std::vector<std::string> command{SELDIAL_UC};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return command;
  }

  static inline const tests::Streams kStreams{tests::Streams::Errors::kWithOutput, {}};

  const tests::TemporaryDirectory directory_;
  const std::vector<std::string> environment_;
  tests::ChildProcess process_;
};

}  // namespace seldial
