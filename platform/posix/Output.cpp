#include "platform/Output.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
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
  static auto* const output = new LineOutput(STDERR_FILENO, milliseconds(100));
  return *output;
}

void report(std::size_t lost) {
  if (lost == 0) return;
  printError("seldial: nobody read standard output; lines lost: " + std::to_string(lost));
}

/// Opens the terminal of `descriptor` once more, so that writing to it never blocks: a terminal
/// that poll() reports as writable may take only a part of a line, and the flags of the descriptor
/// belong to all processes that share it. -1 if it is no terminal or cannot be opened.
int openTerminal(int descriptor) {
  // Opening the name of a master, which is no user's terminal, would create another terminal.
  if (isatty(descriptor) == 0 || ptsname(descriptor) != nullptr) return -1;
  char name[PATH_MAX];
  if (ttyname_r(descriptor, name, sizeof name) != 0) return -1;
  return open(name, O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
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

LineOutput::LineOutput(int descriptor, milliseconds timeout)
    : terminal_(openTerminal(descriptor)),
      descriptor_(terminal_ != -1 ? terminal_ : descriptor),
      pieceSize_(terminal_ == -1 && isatty(descriptor) != 0 ? 1 : PIPE_BUF),
      timeout_(timeout) {}

LineOutput::~LineOutput() {
  if (terminal_ != -1) close(terminal_);
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

/// False if there was no space for the whole line in time.
bool LineOutput::write(const LinePieces& line) {
  const auto deadline = Clock::now() + timeout_;
  char buffer[PIPE_BUF];
  std::size_t size = 0;
  bool inTime = true;
  const auto append = [&](std::string_view piece) {
    while (inTime && !piece.empty()) {
      if (size == pieceSize_) {
        inTime = writePiece({buffer, std::exchange(size, 0)}, deadline);
      }
      const std::size_t count = piece.copy(buffer + size, pieceSize_ - size);
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
    } else if (errno == EAGAIN) {  // another process is writing, or has used the space
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
