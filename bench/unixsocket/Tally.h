#pragma once

#include <condition_variable>
#include <cstddef>
#include <mutex>

namespace seldial::bench {

/// Threads add to it, and one waits until there is enough.
class Tally {
 public:
  void add(std::size_t count = 1);

  /// Waits until everything that was ever added comes to `total`.
  void waitFor(std::size_t total);

 private:
  std::mutex mutex_;  ///< guards the two numbers
  std::condition_variable enough_;
  std::size_t added_ = 0;
  std::size_t wanted_ = 0;
};

}  // namespace seldial::bench
