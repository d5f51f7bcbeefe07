// Makes an application copy its selection: keys, which each kind of compositor lets a program type
// in a way of its own.
#pragma once

#include <functional>

#include "platform/wayland/Display.h"
#include "platform/wayland/SeatKeymap.h"

struct zwp_virtual_keyboard_v1;

namespace seldial::platform::wayland {

/// Keys by which applications copy.
enum class Chord {
  kControlInsert,  ///< copies in windows, but may be typed into a terminal
  kCopyKey,        ///< XF86Copy; copies in some programs and means nothing to the others
};

/// Main thread only.
class CopyKeys {
 public:
  virtual ~CopyKeys() = default;

  /// Types a chord into the focused window. Returns before the application has acted. False, with
  /// nothing typed, when that is impossible or not safe at this moment.
  virtual bool type(Chord chord) = 0;
};

/// A keyboard of our own on the user's seat.
///
/// A compositor keeps the modifiers of each keyboard apart, so what the user holds is no part of
/// what is typed, and nothing that is typed stays down. Main thread only.
class VirtualKeyboard final : public CopyKeys {
 public:
  /// The display must offer a seat and virtual keyboards. It and the keymap must outlive this
  /// object.
  VirtualKeyboard(Display& display, const SeatKeymap& keymap);
  ~VirtualKeyboard() override;
  VirtualKeyboard(const VirtualKeyboard&) = delete;
  VirtualKeyboard& operator=(const VirtualKeyboard&) = delete;

  /// Types nothing when the keymap of the seat has no such keys.
  bool type(Chord chord) override;

 private:
  bool useKeymapOfSeat();
  void press(std::uint32_t key);

  Display& display_;
  const SeatKeymap& seatKeymap_;
  Owned<zwp_virtual_keyboard_v1> keyboard_;
  KeymapFile uploaded_;
  ChordKeys keys_;
};

/// Typing under KWin, by its fake input.
///
/// What is typed is mixed with what the user holds: KWin has one modifier state for all keyboards.
/// Letting go of the user's modifiers is no way: KWin then takes a key that the user presses while
/// still holding them for a plain one, which would replace the selection. So nothing is typed
/// before the user has let go. Main thread only.
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
