// Whether the user holds a modifier, which KWin tells nobody but the focused window.
//
// KWin has one modifier state for all keyboards, also for keys that programs type. So a key that no
// keyboard has is made a global shortcut: one action has it alone, another has it with each
// combination of modifiers. The action that fires when the key is typed tells what is held, and no
// window gets the press.
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

  /// How long the user may hold modifiers before a use of the hot key is given up.
  static constexpr std::chrono::seconds kPatience{5};

  /// All of them must outlive this object.
  ModifierProbe(linux_port::MainLoop& loop, Bus& bus, GlobalAccel& shortcuts, HotKeyClaims& claims,
                const SeatKeymap& keymap, TapKey tapKey);

  /// Takes a key that nobody uses, if it has none yet. False when there is none.
  bool open();
  /// Gives the key back.
  void close();

  /// Returns once no modifier is held. False when the user holds one for longer than kPatience, the
  /// program is to end, or KWin does not tell.
  bool waitUntilUp();

  /// For the handler of GlobalAccel.
  void pressed(const std::string& action);

 private:
  /// Whether a modifier is held; nothing when that cannot be found out.
  enum class Answer { kUp, kHeld };
  std::optional<Answer> ask();
  bool take(xkb_keymap& keymap, std::uint32_t key);

  linux_port::MainLoop& loop_;
  Bus& bus_;
  GlobalAccel& shortcuts_;
  HotKeyClaims& claims_;
  const SeatKeymap& keymap_;
  const TapKey tapKey_;
  std::optional<HotKeyClaim> upClaim_;
  std::optional<HotKeyClaim> heldClaim_;
  std::uint32_t key_ = 0;  ///< an evdev code; 0 while there is none
  std::optional<Answer> answer_;
};

}  // namespace seldial::platform::wayland
