// A keyboard of our own on the user's seat, to type the copy keystroke with.
//
// A compositor keeps the modifiers of each keyboard apart, so what the user holds is no part of
// what is typed, and nothing that is typed stays down.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/wayland/Display.h"
#include "platform/wayland/SeatKeymap.h"

struct zwp_virtual_keyboard_v1;

namespace seldial::platform::wayland {

/// Main thread only.
class VirtualKeyboard {
 public:
  /// How to make an application copy its selection.
  enum class Chord {
    kControlInsert,  ///< copies in windows, but may be typed into a terminal
    kCopyKey,        ///< XF86Copy; copies in some programs and means nothing to the others
  };

  /// The display must offer a seat and virtual keyboards. It and the keymap must outlive this
  /// object.
  VirtualKeyboard(Display& display, const SeatKeymap& keymap);
  ~VirtualKeyboard();
  VirtualKeyboard(const VirtualKeyboard&) = delete;
  VirtualKeyboard& operator=(const VirtualKeyboard&) = delete;

  /// Gives the keyboard the keymap of the seat, so that applications see no other layout. False
  /// when there is none that can be used.
  bool useKeymapOfSeat();

  /// Types a chord into the focused window. Returns before the application has acted. False, with
  /// nothing typed, when the keymap of the seat has no such keys.
  bool type(Chord chord);

 private:
  /// The keys of the uploaded keymap, as evdev numbers them, and the bit of Control.
  struct Keys {
    std::optional<std::uint32_t> control;
    std::optional<std::uint32_t> insert;
    std::optional<std::uint32_t> copy;
    std::uint32_t controlBit = 0;
  };

  void press(std::uint32_t key);

  Display& display_;
  const SeatKeymap& seatKeymap_;
  Owned<zwp_virtual_keyboard_v1> keyboard_;
  KeymapFile uploaded_;
  Keys keys_;
};

}  // namespace seldial::platform::wayland
