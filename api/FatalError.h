#pragma once

#include <poll.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace seldial {

/// Ends the program at once because of a broken invariant: writes `message` and a newline to
/// standard error, unless that is a full pipe, and aborts. Nothing is cleaned up and no response is
/// sent. Any thread.
[[noreturn]] inline void fatalError(const std::string& message) {
  const std::string line = message + "\n";
  pollfd errors{STDERR_FILENO, POLLOUT, 0};
  if (::poll(&errors, 1, 0) != 0) (void)std::fputs(line.c_str(), stderr);
  std::abort();
}

}  // namespace seldial
