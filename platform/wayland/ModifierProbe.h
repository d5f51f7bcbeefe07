// Detects whether the user holds a modifier, which KWin reports only to the focused window.
//
// KWin has one modifier state for all keyboards, including keys that programs type. So a key that
// no keyboard has is registered as a global shortcut: alone for one action, and with every
// combination of modifiers for another. When the key is typed, the action that fires shows whether
// a modifier is held, and no window receives the key.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "platform/wayland/GlobalAccel.h"
#include "platform/wayland/HotKeyClaims.h"
#include "platform/wayland/SeatKeymap.h"

namespace seldial::platform::wayland {

/// Main thread only.
class ModifierProbe {
 public:
  /// Presses and releases a key, given as an evdev code, and returns once the compositor has
  /// handled both.
  using TapKey = std::function<void(std::uint32_t key)>;

  /// How long the user may hold modifiers before a use of the hot key is abandoned.
  static constexpr std::chrono::seconds kTimeout{5};

  /// All arguments must outlive this object.
  ModifierProbe(linux_port::MainLoop& loop, Bus& bus, GlobalAccel& shortcuts, HotKeyClaims& claims,
                const SeatKeymap& keymap, TapKey tapKey);

  /// Registers a key that no program uses, if none is registered yet. False if there is no such
  /// key.
  bool open();
  /// Unregisters the key.
  void close();

  /// Returns once no modifier is held. False if the user holds one for longer than kTimeout, the
  /// program is to end, or KWin does not answer.
  bool waitUntilReleased();

  /// Called by the handler of GlobalAccel.
  void pressed(const std::string& action);

 private:
  /// Whether a modifier is held; nothing if that cannot be determined.
  enum class Answer { kUp, kHeld };
  std::optional<Answer> ask();
  bool useKey(xkb_keymap& keymap, std::uint32_t key);

  linux_port::MainLoop& loop_;
  Bus& bus_;
  GlobalAccel& shortcuts_;
  HotKeyClaims& claims_;
  const SeatKeymap& keymap_;
  const TapKey tapKey_;
  std::optional<HotKeyClaim> upClaim_;
  std::optional<HotKeyClaim> heldClaim_;
  std::uint32_t key_ = 0;  ///< an evdev code; 0 if there is none
  std::optional<Answer> answer_;
};

}  // namespace seldial::platform::wayland
