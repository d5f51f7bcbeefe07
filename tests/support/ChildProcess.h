// A program that a test starts: it never outlives the test, and what it prints can be awaited.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace seldial::tests {

/// Start it on the test's main thread: it is killed when the starting thread ends.
class ChildProcess {
 public:
  /// `command` is searched in PATH; `environment` ("NAME=value") is added to the test's own.
  /// Throws std::runtime_error when the program is not there, with `hint` in its text.
  explicit ChildProcess(std::vector<std::string> command, std::vector<std::string> environment = {},
                        const std::string& hint = {});
  /// Kills and reaps it.
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  [[nodiscard]] pid_t id() const { return pid_; }

  /// The next line of its standard output without the line break; throws std::runtime_error when
  /// it ends or kTimeLimit passes first.
  std::string readLine();

  void signal(int number) const;

  /// Waits for its end: the exit status, or 128 and the signal's number. Throws after kTimeLimit.
  int wait();

 private:
  bool fillBuffer();

  pid_t pid_ = -1;
  int output_ = -1;
  std::string buffer_;
};

}  // namespace seldial::tests
