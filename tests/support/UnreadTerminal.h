// A terminal whose window shows something only when the test says so.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace seldial::tests {

class UnreadTerminal {
 public:
  enum class Mode { kCooked, kRaw };  ///< a cooked one sends "\r\n" for a line break

  explicit UnreadTerminal(Mode mode = Mode::kCooked)
      : window_(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    EXPECT_EQ(grantpt(window_), 0);
    EXPECT_EQ(unlockpt(window_), 0);
    end_ = open(ptsname(window_), O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios settings{};
    EXPECT_EQ(tcgetattr(end_, &settings), 0);
    if (mode == Mode::kRaw) settings.c_oflag &= ~static_cast<tcflag_t>(OPOST);
    EXPECT_EQ(tcsetattr(end_, TCSANOW, &settings), 0);
  }
  ~UnreadTerminal() {
    hangUp();
    close(end_);
  }
  UnreadTerminal(const UnreadTerminal&) = delete;
  UnreadTerminal& operator=(const UnreadTerminal&) = delete;

  /// The end that programs write to.
  [[nodiscard]] int end() const { return end_; }

  /// Reads what has arrived in the window. The kernel may take a moment to pass it on.
  [[nodiscard]] std::string take() const {
    std::string all;
    char buffer[4096];
    for (pollfd watched{window_, POLLIN, 0}; poll(&watched, 1, 0) > 0;) {
      const auto count = read(window_, buffer, sizeof buffer);
      if (count <= 0) break;
      all.append(buffer, static_cast<std::size_t>(count));
    }
    return all;
  }

  /// Closes the window, which ends every write.
  void hangUp() {
    if (window_ != -1) close(window_);
    window_ = -1;
  }

 private:
  int window_;
  int end_ = -1;
};

}  // namespace seldial::tests
