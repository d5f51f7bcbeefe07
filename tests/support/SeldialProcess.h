// The real program as a child process, without a desktop unless the test gives it one.
#pragma once

#include <sys/types.h>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace seldial::tests {

/// Its standard output is read all the time, so that it never stalls on a full pipe.
class SeldialProcess {
 public:
  struct Options {
    std::string display;                 ///< DISPLAY; empty: none
    std::vector<int> closedDescriptors;  ///< of 0, 1 and 2: closed instead of a pipe
  };

  explicit SeldialProcess(std::vector<std::string> arguments)
      : SeldialProcess(std::move(arguments), Options()) {}
  SeldialProcess(std::vector<std::string> arguments, const Options& options);
  /// Kills the program if it still runs.
  ~SeldialProcess();
  SeldialProcess(const SeldialProcess&) = delete;
  SeldialProcess& operator=(const SeldialProcess&) = delete;

  /// The next line of standard output; nothing at its end or when none comes in time.
  std::optional<std::string> nextLine();

  /// Reads lines up to the first that contains `part`; false when there is none.
  bool waitForLine(const std::string& part);

  /// The lines that are left on standard output up to its end.
  std::vector<std::string> restOfLines();

  /// Everything on standard error up to its end.
  std::string errors();

  /// Makes the program's standard output a pipe that nobody reads any more.
  void closeOutput();
  void signal(int number) const;

  /// Waits for the end: the exit status, or minus the number of the signal that killed it.
  int wait();
  [[nodiscard]] bool isRunning();

  [[nodiscard]] pid_t pid() const { return pid_; }
  /// A number from /proc/PID/status, for example "Threads" or "VmRSS".
  [[nodiscard]] long statusValue(const std::string& key) const;
  [[nodiscard]] int openDescriptors() const;

 private:
  void readOutput();
  bool takeLines(std::string& unfinished);

  pid_t pid_ = -1;
  std::optional<int> status_;
  int output_ = -1;
  int errors_ = -1;
  int stopReading_ = -1;  ///< an eventfd

  std::mutex mutex_;  ///< guards the lines, which the reader adds and the test takes
  std::condition_variable linesChanged_;
  std::deque<std::string> lines_;
  bool ended_ = false;
  std::thread reader_;
};

/// Connects to a socket path, sends `chunks` one after the other, and disconnects.
void sendCommand(const std::string& path, const std::vector<std::string>& chunks);

/// Connects to a socket path; the caller owns the descriptor. -1 when nobody listens.
int connectTo(const std::string& path);

}  // namespace seldial::tests
