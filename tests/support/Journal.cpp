#include "tests/support/Journal.h"

#include <algorithm>

#include "tests/support/Waiting.h"

namespace seldial::tests {

void Journal::add(const std::string& line) {
  const std::lock_guard lock(mutex_);
  lines_.push_back(line);
  changed_.notify_all();
}

std::vector<std::string> Journal::lines() const {
  const std::lock_guard lock(mutex_);
  return lines_;
}

std::size_t Journal::count(const std::string& line) const {
  const std::lock_guard lock(mutex_);
  return countLocked(line);
}

bool Journal::waitFor(const std::string& line, std::size_t times) const {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, kTimeLimit, [&] { return countLocked(line) >= times; });
}

void Journal::clear() {
  const std::lock_guard lock(mutex_);
  lines_.clear();
}

std::size_t Journal::countLocked(const std::string& line) const {
  return static_cast<std::size_t>(std::count(lines_.begin(), lines_.end(), line));
}

}  // namespace seldial::tests
