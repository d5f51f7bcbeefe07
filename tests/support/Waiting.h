#pragma once

#include <chrono>
#include <thread>

namespace seldial::tests {

/// How long a test waits for something that must happen before it fails. Generous, since only a
/// failing test waits that long: the machine may be busy, and a sanitizer slows a program tenfold.
inline constexpr std::chrono::seconds kTimeLimit{60};

/// Polls until `condition` holds, for what has no event to wait for, such as the state of another
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
