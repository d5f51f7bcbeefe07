// A desktop on which every use of the hot key Ctrl+Alt+D dials.
#pragma once

#include <algorithm>

#include "tests/platform/x11/X11Test.h"

namespace seldial::platform::x11 {

constexpr std::chrono::milliseconds kDelay{150};
const std::string kNumber = "+31 20 123 4567";

class DialTest : public X11Test {
 protected:
  void SetUp() override {
    const auto registered = port.registerHotKey(kVK_ANSI_D, kControlAlt);
    ASSERT_TRUE(registered);
    hotKey = *registered;
    port.dialOnRelease(kDelay);
  }

  /// Waits for dial number `count` and expects the number.
  void expectDial(std::size_t count) {
    port.waitForDials(count);
    EXPECT_EQ(port.dialled()[count - 1], kNumber);
  }

  /// The received keys other than modifiers, as key and state.
  static std::vector<std::pair<unsigned, unsigned>> typedInto(const XClient& client) {
    std::vector<std::pair<unsigned, unsigned>> result;
    for (const auto& record : client.keys()) {
      const bool modifier =
          std::set<std::uint8_t>{kKeyLeftControl, kKeyRightControl, kKeyLeftAlt,  kKeyAltGr,
                                 kKeyLeftShift,   kKeyLeftSuper,    kKeyCapsLock, kKeyNumLock}
              .count(record.key) != 0;
      if (record.pressed && !modifier) result.emplace_back(record.key, record.state);
    }
    return result;
  }

  using Typed = std::vector<std::pair<unsigned, unsigned>>;

  HotKeyRef hotKey = 0;
};

}  // namespace seldial::platform::x11
