// A keyboard of our own on the user's seat, to type the copy keystroke with.
//
// A compositor keeps the modifiers of each keyboard apart, so what the user holds is no part of
// what is typed, and nothing that is typed stays down.
#pragma once

#include "platform/wayland/CopyKeys.h"
#include "platform/wayland/Display.h"
#include "platform/wayland/SeatKeymap.h"

struct zwp_virtual_keyboard_v1;

namespace seldial::platform::wayland {

/// Main thread only.
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

}  // namespace seldial::platform::wayland
