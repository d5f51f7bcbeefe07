// A program that a test starts. It does not outlive the test.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

#include "tests/support/OutputReader.h"

namespace seldial::tests {

/// The standard streams of a child. Its standard input is empty.
struct Streams {
  enum class Errors {
    kInherited,   ///< to the test's own standard error
    kCaptured,    ///< to ChildProcess::errors()
    kWithOutput,  ///< to the standard output
  };

  Errors errors = Errors::kInherited;
  std::vector<int> closed;  ///< those of 0, 1 and 2 that are closed in the child
  int output = -1;          ///< the standard output; -1: a pipe that is always read
};

/// Start it on the test's main thread: it is killed when the thread that started it ends.
class ChildProcess {
 public:
  /// `command` is searched in PATH. `environment` is added to the test's own: "NAME=value" sets a
  /// variable, "NAME" removes it. Throws std::runtime_error if the program is not found; the text
  /// ends with `hint`.
  explicit ChildProcess(std::vector<std::string> command,
                        const std::vector<std::string>& environment = {},
                        const std::string& hint = {}, const Streams& streams = {});
  /// Kills and reaps it.
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  [[nodiscard]] pid_t id() const { return pid_; }

  /// The next line of its standard output without the line break. Throws std::runtime_error at the
  /// end of the output and after kTimeLimit.
  std::string readLine();

  /// Reads lines up to the first that contains `part`; false if the output ends without one.
  bool waitForLine(const std::string& part);

  /// The remaining lines, up to the end of the output.
  std::vector<std::string> restOfLines();

  /// All of its standard error up to the end, if that is captured.
  std::string errors();

  /// Closes the read end of its standard output.
  void closeOutput();

  void signal(int number) const;

  /// Waits for its end and returns the exit status, or 128 plus the number of the signal. Throws
  /// std::runtime_error after kTimeLimit.
  int wait();
  [[nodiscard]] bool isRunning();

 private:
  void reap(int options);

  pid_t pid_ = -1;
  std::optional<int> status_;  ///< as waitpid reports it; nothing while it runs
  std::optional<OutputReader> output_;
  std::optional<OutputReader> errors_;
};

}  // namespace seldial::tests
