#pragma once

#include <chrono>
#include <thread>

namespace seldial::doubles {

/// Looks again and again until `condition` holds, for what has no event to wait for, such as the
/// state of another process; false after a limit that only a failure reaches.
template <class Condition>
[[nodiscard]] bool eventually(const Condition& condition) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return true;
}

}  // namespace seldial::doubles
