#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

namespace seldial {

/// Ends the program at once because of a broken invariant: writes `message` and a newline to
/// standard error and aborts. Nothing is cleaned up and no response is sent. Any thread.
[[noreturn]] inline void fatalError(const std::string& message) {
  const std::string line = message + "\n";
  (void)std::fputs(line.c_str(), stderr);
  std::abort();
}

}  // namespace seldial
