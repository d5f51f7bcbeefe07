// Typing under KWin, by its fake input.
//
// What is typed is mixed with what the user holds: KWin has one modifier state for all keyboards.
// Letting go of the user's modifiers is no way: KWin then takes a key that the user presses while
// still holding them for a plain one, which would replace the selection. So nothing is typed before
// the user has let go.
#pragma once

#include <functional>

#include "platform/wayland/CopyKeys.h"
#include "platform/wayland/Display.h"
#include "platform/wayland/SeatKeymap.h"

namespace seldial::platform::wayland {

/// Main thread only.
class FakeKeyboard final : public CopyKeys {
 public:
  /// Returns once the user holds no modifier; false when that does not happen.
  using WaitForModifiers = std::function<bool()>;

  /// The display must offer fake input. It and the keymap must outlive this object.
  FakeKeyboard(Display& display, const SeatKeymap& keymap, WaitForModifiers waitForModifiers);

  /// Types nothing, and says so on standard error, when the user does not let go of a modifier.
  bool type(Chord chord) override;

  /// Presses and releases a key, an evdev code. Returns once the compositor has handled both.
  void tap(std::uint32_t key);

 private:
  Display& display_;
  const SeatKeymap& keymap_;
  const WaitForModifiers waitForModifiers_;
};

}  // namespace seldial::platform::wayland
