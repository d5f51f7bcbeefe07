#pragma once

#include <chrono>
#include <thread>

namespace seldial::tests {

/// How long a test waits for an event before it fails. Generous, because only a failing test waits
/// that long: the machine may be busy, and a sanitizer slows a program down tenfold.
inline constexpr std::chrono::seconds kTimeLimit{60};

/// Polls until `condition` holds; for conditions without an event, such as the state of another
/// process. False after kTimeLimit.
template <class Condition>
[[nodiscard]] bool eventually(const Condition& condition) {
  const auto end = std::chrono::steady_clock::now() + kTimeLimit;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return true;
}

}  // namespace seldial::tests
