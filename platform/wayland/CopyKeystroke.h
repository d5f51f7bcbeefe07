// Types the keys that make an application copy its selection. Each kind of compositor has its own
// interface for typing.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "platform/wayland/Display.h"
#include "platform/wayland/SeatKeymap.h"

struct zwp_virtual_keyboard_v1;

namespace seldial::platform::wayland {

/// Keys by which applications copy.
enum class Chord {
  kControlInsert,  ///< copies in most windows, but may reach the program in a terminal
  kCopyKey,        ///< XF86Copy; copies in some programs and is ignored by the others
};

/// Main thread only.
class CopyKeys {
 public:
  virtual ~CopyKeys() = default;

  /// Types a chord into the focused window. Returns before the application has acted. False, with
  /// nothing typed, if that is impossible or not safe at the moment.
  virtual bool type(Chord chord) = 0;
};

/// A virtual keyboard on the user's seat.
///
/// A compositor keeps separate modifiers for each keyboard, so the keys that the user holds do not
/// affect the typed keys, and no typed key stays down. Main thread only.
class VirtualKeyboard final : public CopyKeys {
 public:
  /// The display must offer a seat and virtual keyboards. It and the keymap must outlive this
  /// object.
  VirtualKeyboard(Display& display, const SeatKeymap& keymap);
  ~VirtualKeyboard() override;
  VirtualKeyboard(const VirtualKeyboard&) = delete;
  VirtualKeyboard& operator=(const VirtualKeyboard&) = delete;

  /// Types nothing if the keymap of the seat has no such keys.
  bool type(Chord chord) override;

 private:
  bool useSeatKeymap();
  void press(std::uint32_t key);
  void pressWithControl(std::uint32_t key);

  Display& display_;
  const SeatKeymap& seatKeymap_;
  Owned<zwp_virtual_keyboard_v1> keyboard_;
  std::optional<unsigned> uploaded_;  ///< the generation of the keymap that it has
  ChordKeys keys_;                    ///< in that keymap
};

/// Typing under KWin, through fake input.
///
/// KWin has one modifier state for all keyboards, so the modifiers that the user holds apply to the
/// typed keys. Releasing the user's modifiers is not an option: KWin would then treat a key that
/// the user presses while still holding them as a plain key, which would replace the selection. So
/// nothing is typed before the user has released them. Main thread only.
class FakeKeyboard final : public CopyKeys {
 public:
  /// Returns once the user holds no modifier; false if that does not happen.
  using WaitForModifiers = std::function<bool()>;

  /// The display must offer fake input. It and the keymap must outlive this object.
  FakeKeyboard(Display& display, const SeatKeymap& keymap, WaitForModifiers waitForModifiers);

  /// If the user does not release a modifier, types nothing and writes a line to standard error.
  bool type(Chord chord) override;

  /// Presses and releases a key, an evdev code. Returns once the compositor has handled both.
  void tap(std::uint32_t key);

 private:
  Display& display_;
  const SeatKeymap& keymap_;
  const WaitForModifiers waitForModifiers_;
};

}  // namespace seldial::platform::wayland
