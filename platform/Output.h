// Lines on standard output and standard error, which never wait long for whoever reads them.
#pragma once

#include <chrono>
#include <cstddef>
#include <mutex>
#include <string_view>

namespace seldial::platform {

/// Writes `line` and a line break to standard output, never mixed with the lines of other threads.
/// A pipe that is full because nobody reads it delays a line by at most a second. That line and
/// those after it are dropped, without a wait, until there is room again; then one line on standard
/// error says how many. Of a long line that was dropped, the beginning may have been written; it
/// ends with a line break. If the output is closed or the disk is full, the line is lost silently.
/// Any thread.
void printLine(std::string_view line);

/// Writes `line` and a line break to standard error, and drops it if there is no room. Any thread.
void printError(std::string_view line);

/// Reports on standard error how many lines standard output has lost since the last report.
void reportLostLines();

/// What the functions above do, for any descriptor. Any thread.
class LineOutput {
 public:
  /// Does not own `descriptor`, and changes no flag of it: other processes may share it. `patience`
  /// is how long a line waits for room.
  LineOutput(int descriptor, std::chrono::milliseconds patience)
      : descriptor_(descriptor), patience_(patience) {}

  /// Returns how many lines were lost before this one, if there was room for this one again.
  std::size_t print(std::string_view line);

  /// The number of lines lost that print() has not returned; it is 0 after that.
  std::size_t takeLost();

 private:
  using Clock = std::chrono::steady_clock;

  bool write(std::string_view line);
  bool writePiece(std::string_view piece, Clock::time_point deadline);
  [[nodiscard]] bool waitForRoom(Clock::time_point deadline) const;

  const int descriptor_;
  const std::chrono::milliseconds patience_;
  std::mutex mutex_;         ///< guards the members below, and keeps lines whole
  std::size_t lost_ = 0;     ///< lines since there was no room
  bool atLineBegin_ = true;  ///< false after the beginning of a line that was dropped
};

}  // namespace seldial::platform
