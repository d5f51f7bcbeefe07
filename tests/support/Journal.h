#pragma once

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>
#include <vector>

namespace seldial::tests {

/// The calls that doubles received, one line each, in order. Any thread.
class Journal {
 public:
  void add(const std::string& line);
  [[nodiscard]] std::vector<std::string> lines() const;
  [[nodiscard]] std::size_t count(const std::string& line) const;

  /// Waits until `line` has been added `times` times; false after kTimeLimit.
  [[nodiscard]] bool waitFor(const std::string& line, std::size_t times = 1) const;
  void clear();

 private:
  [[nodiscard]] std::size_t countLocked(const std::string& line) const;

  mutable std::mutex mutex_;
  mutable std::condition_variable changed_;
  std::vector<std::string> lines_;
};

}  // namespace seldial::tests
