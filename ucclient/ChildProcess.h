#pragma once

#include <sys/types.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace seldial {

/// A child process. On Linux the system sends it SIGTERM when the parent ends for any reason. The
/// child has its own process group, so that Ctrl-C in a terminal reaches only the parent, which
/// then stops the child. It inherits the parent's standard error.
///
/// Start, use and destroy it on one thread, which must live as long as the process.
class ChildProcess {
 public:
  /// Both are called on separate threads and may outlive the object.
  struct Events {
    std::function<void(const std::string& line)> wroteLine;  ///< on its standard output
    std::function<void()> ended;  ///< called once; wait() no longer blocks then
  };

  /// Null if `command` (the program and its arguments) cannot be started; `error` then says why. A
  /// program name without a slash is searched for in PATH. `input` is the standard input of the
  /// child, at most 4096 bytes.
  static std::unique_ptr<ChildProcess> start(std::vector<std::string> command, Events events,
                                             std::string& error, const std::string& input = {});

  /// Kills the child unless wait() has returned.
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// Sends a signal to the child, unless wait() has returned.
  void signal(int number) const;

  /// Blocks until the child has ended and returns its status, as from waitpid(). Call it once.
  int wait();

 private:
  explicit ChildProcess(pid_t process) : process_(process) {}

  pid_t process_;  ///< -1 once wait() has returned
};

/// Starts a program that may outlive this one, in its own session. Its standard streams are
/// /dev/null. `ended` is called once, on a separate thread, with the status as from waitpid().
/// False if the program cannot be started; `error` then says why.
bool startDetached(std::vector<std::string> command, std::function<void(int status)> ended,
                   std::string& error);

/// Describes how a program ended, to follow its name: "ended with status 1", "was killed by signal
/// 9 (Killed)". `status` is as from waitpid(). Call it on one thread only: on macOS the next call
/// overwrites the name of the signal.
[[nodiscard]] std::string describeExitStatus(int status);

}  // namespace seldial
