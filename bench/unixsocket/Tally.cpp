#include "bench/unixsocket/Tally.h"

namespace seldial::bench {

void Tally::add(std::size_t count) {
  const std::lock_guard lock(mutex_);
  added_ += count;
  if (added_ >= wanted_) enough_.notify_one();
}

void Tally::waitFor(std::size_t total) {
  std::unique_lock lock(mutex_);
  wanted_ = total;
  enough_.wait(lock, [this] { return added_ >= wanted_; });
}

}  // namespace seldial::bench
