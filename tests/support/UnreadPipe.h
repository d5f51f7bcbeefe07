// A pipe that is read only when the test does so.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <climits>
#include <cstddef>
#include <string>

namespace seldial::tests {

class UnreadPipe {
 public:
  static constexpr std::size_t kSize = 2UL * PIPE_BUF;

  /// It holds two pages, the minimum with which poll() reports space in a pipe that is not empty.
  UnreadPipe() {
    EXPECT_EQ(pipe2(ends_, O_CLOEXEC), 0);
    EXPECT_GT(fcntl(ends_[1], F_SETPIPE_SZ, static_cast<int>(kSize)), 0);
  }
  ~UnreadPipe() {
    close(ends_[0]);
    close(ends_[1]);
  }
  UnreadPipe(const UnreadPipe&) = delete;
  UnreadPipe& operator=(const UnreadPipe&) = delete;

  [[nodiscard]] int writingEnd() const { return ends_[1]; }

  void fill() const {
    const std::string bytes(kSize, '-');
    EXPECT_EQ(write(ends_[1], bytes.data(), bytes.size()), ssize_t{kSize});
  }

  [[nodiscard]] bool full() const {
    pollfd end{ends_[1], POLLOUT, 0};
    return poll(&end, 1, 0) == 0;
  }

  /// Reads its current contents.
  [[nodiscard]] std::string take() const {
    std::string all;
    char buffer[4096];
    for (pollfd end{ends_[0], POLLIN, 0}; poll(&end, 1, 0) > 0 && (end.revents & POLLIN) != 0;) {
      all.append(buffer, static_cast<std::size_t>(read(ends_[0], buffer, sizeof buffer)));
    }
    return all;
  }

 private:
  int ends_[2] = {-1, -1};
};

}  // namespace seldial::tests
