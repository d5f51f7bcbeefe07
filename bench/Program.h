// A program that is measured, Seldial or a floor, and its resources as reported by the system.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "bench/UcClient.h"

namespace seldial::bench {

/// A child process, whose output is discarded; the destructor kills and reaps it. Throws
/// std::runtime_error if it cannot be started.
class Program {
 public:
  /// `desktop` holds the variables of the desktop session, such as "DISPLAY=:1". It may be empty
  /// for no desktop.
  explicit Program(std::vector<std::string> command, const std::vector<std::string>& desktop = {});
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  /// The unique set size in bytes: memory that the process shares with no other.
  [[nodiscard]] double uniqueMemory() const;

  /// The peak memory since resetPeakMemory(), in bytes.
  [[nodiscard]] double peakMemory() const;
  /// Sets the peak to the current memory, and returns that.
  double resetPeakMemory() const;

  [[nodiscard]] int threadCount() const;

  /// How many times any of its threads was scheduled since the start.
  [[nodiscard]] long wakeUps() const;

  /// Returns after 3 s in which none of its threads ran, so that no work is pending.
  void settle() const;

 private:
  pid_t process_ = -1;
};

/// The command line of a program that uses the sockets of a client.
using CommandLine = std::function<std::vector<std::string>(const UcClient&)>;

/// `program` is the path; if empty, the program of this build.
CommandLine seldial(const std::string& program = {});
CommandLine threadPerConnection(std::size_t answerLength);
CommandLine listenAndWait();
/// `floor` is that of the desktop: "dial" or "dial_sway".
CommandLine bareDial(const std::string& floor, unsigned keyCode, unsigned delay);

/// A program that answers commands, with its own UC client. Ready after construction.
class Measured {
 public:
  explicit Measured(const CommandLine& commandLine, const std::vector<std::string>& desktop = {});

  const UcClient client;

 private:
  const Descriptor watch_;

 public:
  const Program program;
};

}  // namespace seldial::bench
