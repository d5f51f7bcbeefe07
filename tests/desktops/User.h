// What a user does under a compositor, for scripts/test-desktops. Each line on standard input has
// words: a number of milliseconds to wait, "+KEY" to press and "-KEY" to release a key or a button
// of the mouse, an evdev code, "@X,Y" to move the pointer. The time of the last key or button, in
// seconds, is printed once the compositor has handled the line.
#pragma once

#include <linux/input-event-codes.h>
#include <poll.h>

#include <cctype>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <iostream>
#include <sstream>
#include <string>

namespace seldial::tests {

class User {
 public:
  virtual ~User() = default;

  // Each returns once the compositor has handled it.
  virtual void changeKey(std::uint32_t key, bool down) = 0;
  virtual void changeButton(std::uint32_t button, bool down) = 0;
  virtual void movePointer(unsigned x, unsigned y) = 0;

  /// Returns at the end of standard input.
  void play() {
    for (std::string line; std::getline(std::cin, line);) {
      std::istringstream words(line);
      for (std::string word; words >> word;) act(word);
      std::printf("%.6f\n", time_);
      std::fflush(stdout);
    }
  }

 private:
  void act(const std::string& word) {
    if (word[0] == '@') {
      movePointer(static_cast<unsigned>(std::stoul(word.substr(1))),
                  static_cast<unsigned>(std::stoul(word.substr(word.find(',') + 1))));
    } else if (std::isdigit(word[0]) != 0) {
      poll(nullptr, 0, std::stoi(word));
    } else {
      const auto now = std::chrono::steady_clock::now().time_since_epoch();
      time_ = std::chrono::duration<double>(now).count();
      change(static_cast<std::uint32_t>(std::stoul(word.substr(1))), word[0] == '+');
    }
  }

  void change(std::uint32_t code, bool down) {
    constexpr std::uint32_t kFirstButton = BTN_MOUSE;
    constexpr std::uint32_t kLastButton = BTN_TASK;
    if (code >= kFirstButton && code <= kLastButton) {
      changeButton(code, down);
    } else {
      changeKey(code, down);
    }
  }

  double time_ = 0;
};

}  // namespace seldial::tests
