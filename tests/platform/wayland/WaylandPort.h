// The ports of a Wayland session, running.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tests/platform/RunningPort.h"
#include "tests/support/wayland/Editor.h"
#include "tests/support/wayland/Sway.h"
#include "tests/support/wayland/UserKeyboard.h"

namespace seldial::platform::wayland {

class WaylandPort final : public RunningPort {
 public:
  /// Connects to the compositor; returns once that has succeeded or failed.
  explicit WaylandPort(const tests::Sway& sway,
                       tests::Sway::Ipc ipc = tests::Sway::Ipc::kInEnvironment);
  ~WaylandPort() { end(); }
  WaylandPort(const WaylandPort&) = delete;
  WaylandPort& operator=(const WaylandPort&) = delete;

  /// The ids of the released hot keys, in order.
  [[nodiscard]] std::vector<std::uint32_t> releases() const;
};

constexpr std::uint32_t kControlAlt = kHotKeyControl | kHotKeyOption;
const std::vector<unsigned> kControlAltKeys{KEY_LEFTCTRL, KEY_LEFTALT};

/// A compositor with a user's keyboard and the port.
class WaylandTest : public testing::Test {
 protected:
  explicit WaylandTest(const std::string& configuration = {}) : sway(configuration) {}

  void useHotKey() { keyboard.use(kControlAltKeys, KEY_D); }

  tests::Sway sway;
  tests::UserKeyboard keyboard{sway.display()};
  std::optional<WaylandPort> port{std::in_place, sway};
};

}  // namespace seldial::platform::wayland
