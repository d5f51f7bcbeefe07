// A program that runs in a terminal.
#pragma once

#include <string>
#include <vector>

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryDirectory.h"

namespace seldial::tests {

/// Shows the number 4930123, which can then be selected, and reads one key.
class TerminalProgram {
 public:
  /// The program and its arguments, for the terminal to run.
  [[nodiscard]] std::vector<std::string> command() const { return {"sh", script_.path()}; }

  /// Returns "shown" once the number is on the screen, then the key that the program has received.
  auto readLine() { return output_.readLine(); }

 private:
  const NamedPipe pipe_;
  // When the terminal has reported its cursor position, the text written before is on the screen.
  const TemporaryFile script_{"exec 3>'" + pipe_.path() +
                              "'\n"
                              "stty raw -echo\n"
                              "printf '4930123\\033[6n'\n"
                              "dd bs=1 count=6 of=/dev/null 2>/dev/null\n"
                              "echo shown >&3\n"
                              "dd bs=1 count=1 2>/dev/null >&3\n"
                              "echo >&3\n"};
  ChildProcess output_{{"cat", pipe_.path()}};
};

}  // namespace seldial::tests
