// The real program as a child process, without a desktop unless the test gives it one.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace seldial::program {

/// How long a test waits for what must come. Only a failing test waits this long.
inline constexpr std::chrono::seconds kPatience{60};

/// Looks at `condition` again and again until it holds; for what no event announces.
bool eventually(const std::function<bool()>& condition);

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

  /// Everything that is left on standard output and standard error up to their ends.
  std::string restOfOutput();
  std::string restOfErrors();

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
  bool readMore();

  pid_t pid_ = -1;
  std::optional<int> status_;
  int output_ = -1;
  int errors_ = -1;
  std::string buffer_;
};

/// Connects to a socket path, sends `chunks` one after the other, and disconnects.
void sendCommand(const std::string& path, const std::vector<std::string>& chunks);

/// Connects to a socket path; the caller owns the descriptor. -1 when nobody listens.
int connectTo(const std::string& path);

}  // namespace seldial::program
