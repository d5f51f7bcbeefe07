// Collects what a child process writes to a pipe.
#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

namespace seldial::tests {

/// Reads continuously on a separate thread, so that the process never blocks on a full pipe.
class OutputReader {
 public:
  /// Takes over the read end of a pipe.
  explicit OutputReader(int descriptor);
  /// Stops reading and closes the pipe, whether or not the process still writes to it.
  ~OutputReader();
  OutputReader(const OutputReader&) = delete;
  OutputReader& operator=(const OutputReader&) = delete;

  /// Takes the next line without its line break, or the rest if the stream ends without one.
  /// Nothing at the end of the stream. Throws std::runtime_error after kTimeLimit.
  std::optional<std::string> nextLine();

  /// Takes everything up to the end of the stream. Throws std::runtime_error after kTimeLimit.
  std::string rest();

 private:
  void run();
  bool readOnce();
  void add(std::string_view text);
  std::string takeAll();
  template <class Condition>
  void waitFor(std::unique_lock<std::mutex>& lock, const Condition& condition);

  const int descriptor_;
  const int stop_;  ///< an eventfd

  std::mutex mutex_;  ///< guards what the thread adds and the test takes
  std::condition_variable changed_;
  std::deque<std::string> lines_;  ///< complete lines, without their line breaks
  std::string unfinished_;         ///< what came after the last line break
  bool ended_ = false;

  std::thread thread_;
};

}  // namespace seldial::tests
