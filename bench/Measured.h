// A program under measurement, the product or a floor, with a UC client of its own.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "bench/UcClient.h"

namespace seldial::bench {

/// A child process whose output nobody reads; killed and reaped at the end. Throws
/// std::runtime_error when it cannot be started.
class Program {
 public:
  /// `display` empty: there is none.
  explicit Program(std::vector<std::string> command, const std::string& display = {});
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  [[nodiscard]] pid_t id() const { return process_; }

 private:
  pid_t process_ = -1;
};

/// The command line of a program that uses the sockets of a client.
using CommandLine = std::function<std::vector<std::string>(const UcClient&)>;

CommandLine seldial();
CommandLine threadPerConnection(std::size_t answerLength);
CommandLine listenAndWait();
CommandLine bareDial(unsigned keyCode, unsigned delay);

/// A program that answers commands, started and ready.
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
