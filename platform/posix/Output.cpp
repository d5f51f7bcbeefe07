#include "platform/Output.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <string>
#include <utility>

namespace seldial::platform {
namespace {

using std::chrono::milliseconds;

// Never destroyed: threads may outlive main().
LineOutput& standardOutput() {
  static auto* const output = new LineOutput(STDOUT_FILENO, milliseconds(1000));
  return *output;
}

LineOutput& standardError() {
  static auto* const output = new LineOutput(STDERR_FILENO, milliseconds(0));
  return *output;
}

void report(std::size_t lost) {
  if (lost == 0) return;
  printError("seldial: nobody read standard output; lines lost: " + std::to_string(lost));
}

}  // namespace

void printLine(std::string_view line) {
  report(standardOutput().print(line));
}

void printLine(const LinePieces& line) {
  report(standardOutput().print(line));
}

void printError(std::string_view line) {
  standardError().print(line);
}

void reportLostLines() {
  report(standardOutput().takeLost());
}

std::size_t LineOutput::print(std::string_view line) {
  return print([line](const auto& sink) { sink(line); });
}

std::size_t LineOutput::print(const LinePieces& line) {
  const std::lock_guard lock(mutex_);
  if (lost_ > 0 && !waitForSpace(Clock::now())) {
    ++lost_;
    return 0;
  }
  const std::size_t before = std::exchange(lost_, 0);
  if (!write(line)) lost_ = 1;
  return before;
}

std::size_t LineOutput::takeLost() {
  const std::lock_guard lock(mutex_);
  return std::exchange(lost_, 0);
}

/// If poll() reports a pipe as writable, it takes PIPE_BUF bytes without blocking, so no more are
/// written at once. False if there was no space for the whole line in time.
bool LineOutput::write(const LinePieces& line) {
  const auto deadline = Clock::now() + timeout_;
  char buffer[PIPE_BUF];
  std::size_t size = 0;
  bool inTime = true;
  const auto append = [&](std::string_view piece) {
    while (inTime && !piece.empty()) {
      if (size == sizeof buffer) {
        inTime = writePiece({buffer, std::exchange(size, 0)}, deadline);
      }
      const std::size_t count = piece.copy(buffer + size, sizeof buffer - size);
      piece.remove_prefix(count);
      size += count;
    }
    return inTime;
  };
  if (!atLineStart_) append("\n");
  line(append);
  append("\n");
  return inTime && writePiece({buffer, size}, deadline);
}

bool LineOutput::writePiece(std::string_view piece, Clock::time_point deadline) {
  while (!piece.empty()) {
    if (!waitForSpace(deadline)) return false;
    const auto written = ::write(descriptor_, piece.data(), piece.size());
    if (written > 0) {
      const auto count = static_cast<std::size_t>(written);
      atLineStart_ = piece[count - 1] == '\n';
      piece.remove_prefix(count);
    } else if (errno == EAGAIN) {  // another process made it non-blocking, and used the space
      if (Clock::now() >= deadline) return false;
    } else if (errno != EINTR) {
      break;
    }
  }
  return true;
}

/// Also returns true if writing would fail.
bool LineOutput::waitForSpace(Clock::time_point deadline) const {
  for (;;) {
    const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
    pollfd watched{descriptor_, POLLOUT, 0};
    const int ready = ::poll(&watched, 1, std::max(0, static_cast<int>(left.count())));
    if (ready > 0 || (ready == -1 && errno != EINTR)) return true;
    if (Clock::now() >= deadline) return false;
  }
}

}  // namespace seldial::platform
