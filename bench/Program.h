// A program that is measured: the product or a floor, and what the system says about it.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "bench/UcClient.h"

namespace seldial::bench {

/// A child process, whose output is discarded; killed and reaped at the end. Throws
/// std::runtime_error if it cannot be started.
class Program {
 public:
  /// `display` may be empty: then there is none.
  explicit Program(std::vector<std::string> command, const std::string& display = {});
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  /// In bytes, what would be free if the process were gone: memory that it shares with none.
  [[nodiscard]] double uniqueMemory() const;

  /// In bytes, the most memory that the process had since resetPeakMemory().
  [[nodiscard]] double peakMemory() const;
  /// Sets the peak to the memory of now, and returns that.
  double resetPeakMemory() const;

  [[nodiscard]] int threadCount() const;

  /// How many times any of its threads got a processor since it began.
  [[nodiscard]] long wakeUps() const;

  /// Returns after 3 s in which none of its threads ran, so that nothing is left to be done.
  void settle() const;

 private:
  pid_t process_ = -1;
};

/// The command line of a program that uses the sockets of a client.
using CommandLine = std::function<std::vector<std::string>(const UcClient&)>;

/// `program` is its path; the program of this build if that is empty.
CommandLine seldial(const std::string& program = {});
CommandLine threadPerConnection(std::size_t answerLength);
CommandLine listenAndWait();
CommandLine bareDial(unsigned keyCode, unsigned delay);

/// A program that answers commands, with a UC client of its own; ready once constructed.
class Measured {
 public:
  explicit Measured(const CommandLine& commandLine, const std::string& display = {});

  const UcClient client;

 private:
  const Descriptor watch_;

 public:
  const Program program;
};

}  // namespace seldial::bench
