#pragma once

#include <sys/types.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace seldial {

/// A program that this one started. On Linux the system sends it SIGTERM when this process ends,
/// however it ends. The child gets its own process group, so that Ctrl-C in a terminal reaches only
/// its parent, which then ends it; and its parent's standard error.
///
/// Started, used and destroyed on one thread, which must live as long as the process.
class ChildProcess {
 public:
  /// Both run on their own threads and may outlive the object.
  struct Events {
    std::function<void(const std::string& line)> wroteLine;  ///< on its standard output
    std::function<void()> ended;                             ///< once; wait() then does not block
  };

  /// Null when `command` (the program and its arguments) cannot be started; `error` then says why.
  /// A program without a slash is searched for in PATH. `input` is its standard input, at most 4096
  /// bytes.
  static std::unique_ptr<ChildProcess> start(std::vector<std::string> command, Events events,
                                             std::string& error, const std::string& input = {});

  /// Kills the child if it was not waited for.
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// Sends a signal to the child, unless it was waited for already.
  void signal(int number) const;

  /// Blocks until the child has ended; its status as waitpid() gives it. To be called once.
  int wait();

 private:
  explicit ChildProcess(pid_t process) : process_(process) {}

  pid_t process_;  ///< -1 once it was waited for
};

/// Starts a program that may outlive this one, in a session of its own. It reads and writes
/// nothing: its standard streams are /dev/null. `ended` is called once with its status as waitpid()
/// gives it, on a thread of its own. False when it cannot be started; `error` then says why.
bool startDetached(std::vector<std::string> command, std::function<void(int status)> ended,
                   std::string& error);

/// How a program ended, in words that follow its name: "ended with status 1", "was killed by
/// signal 9 (Killed)". `status` as waitpid() gives it. To be called on one thread of the program
/// only: macOS keeps the signal's name where the next call overwrites it.
[[nodiscard]] std::string describedExitStatus(int status);

}  // namespace seldial
