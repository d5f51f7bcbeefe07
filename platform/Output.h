// Lines on standard output and standard error. A slow reader delays them briefly at most.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <mutex>
#include <string_view>

namespace seldial::platform {

/// Calls `sink` with the pieces of a line, in order, until it returns false. For lines that are too
/// long to be kept in memory.
using LinePieces = std::function<void(const std::function<bool(std::string_view)>& sink)>;

/// Writes `line` and a line break to standard output, never mixed with the lines of other threads.
/// A pipe that is full because nobody reads it, or a terminal whose window has frozen, delays a
/// line by at most one second. That line and the following ones are dropped, without waiting, until
/// there is space again; then one line on standard error says how many. A long line that was
/// dropped may have been written in part; that part ends with a line break. If the output is closed
/// or the disk is full, the line is lost silently. Any thread.
void printLine(std::string_view line);
void printLine(const LinePieces& line);

/// Writes `line` and a line break to standard error. Without space, it waits up to 100 ms and then
/// drops the line. Further lines are dropped at once until there is space again. Any thread.
void printError(std::string_view line);

/// Reports on standard error how many lines standard output has lost since the last report.
void reportLostLines();

/// Implements the functions above for any descriptor. Any thread.
class LineOutput {
 public:
  /// Does not own `descriptor` and does not change its flags, because other processes may share it.
  /// `timeout` is how long a line waits for space.
  LineOutput(int descriptor, std::chrono::milliseconds timeout);
  ~LineOutput();
  LineOutput(const LineOutput&) = delete;
  LineOutput& operator=(const LineOutput&) = delete;

  /// Writes a line. If that succeeds, returns how many lines before it were lost.
  std::size_t print(std::string_view line);
  std::size_t print(const LinePieces& line);

  /// Returns the number of lost lines that print() has not returned yet, and resets it to 0.
  std::size_t takeLost();

 private:
  using Clock = std::chrono::steady_clock;

  bool write(const LinePieces& line);
  bool writePiece(std::string_view piece, Clock::time_point deadline);
  [[nodiscard]] bool waitForSpace(Clock::time_point deadline) const;

  const int terminal_;  ///< owned: the terminal, opened once more; -1 if it is none
  const int descriptor_;
  /// How many bytes never block after poll() has reported space: PIPE_BUF of a pipe. Of a terminal
  /// that cannot be opened once more (after su it is another user's), only one is certain.
  const std::size_t pieceSize_;
  const std::chrono::milliseconds timeout_;
  std::mutex mutex_;         ///< guards the members below, and keeps lines whole
  std::size_t lost_ = 0;     ///< lines lost since the last report
  bool atLineStart_ = true;  ///< false after the beginning of a line that was dropped
};

}  // namespace seldial::platform
