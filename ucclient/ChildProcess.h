#pragma once

#include <sys/types.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace seldial {

/// A program that this one started and that never outlives it: however this process ends, the
/// system sends the child SIGTERM. The child gets a process group of its own, so that Ctrl-C in a
/// terminal reaches its parent alone, which then ends it in order; nothing on its standard input;
/// and its parent's standard error.
///
/// Started, asked and destroyed on one thread, which must live as long as the process.
class ChildProcess {
 public:
  /// Both run on threads of their own and may outlive the object.
  struct Events {
    std::function<void(const std::string& line)> wroteLine;  ///< on its standard output
    std::function<void()> ended;  ///< once; wait() does not block any more
  };

  /// Null when `command` (the program and its arguments) cannot be started; `error` then says why.
  /// A program without a slash is looked for in PATH.
  static std::unique_ptr<ChildProcess> start(std::vector<std::string> command, Events events,
                                             std::string& error);

  /// Ends the child, the hard way, if it was not waited for.
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// Sends a signal to the child, unless it was waited for already.
  void signal(int number) const;

  /// Blocks until the child has ended; its status as waitpid() gives it. Once.
  int wait();

 private:
  explicit ChildProcess(pid_t process) : process_(process) {}

  pid_t process_;  ///< -1 once it was waited for
};

}  // namespace seldial
