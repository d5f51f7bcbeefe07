#include "platform/wayland/VirtualKeyboard.h"

#include <unistd.h>

#include <chrono>

#include "virtual-keyboard-unstable-v1-client.h"

namespace seldial::platform::wayland {
namespace {

/// Milliseconds of the clock that compositors stamp events with.
std::uint32_t now() {
  const auto time = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<std::uint32_t>(
      std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
}

}  // namespace

VirtualKeyboard::VirtualKeyboard(Display& display, const SeatKeymap& keymap)
    : display_(display),
      seatKeymap_(keymap),
      keyboard_(zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(display.virtualKeyboards(),
                                                                        display.seat())) {
  useKeymapOfSeat();
}

VirtualKeyboard::~VirtualKeyboard() {
  zwp_virtual_keyboard_v1_destroy(keyboard_.release());
}

bool VirtualKeyboard::type(Chord chord) {
  if (!useKeymapOfSeat()) return false;
  if (chord == Chord::kCopyKey) {
    if (keys_.copy) press(*keys_.copy);
    return keys_.copy.has_value();
  }
  if (!keys_.control || !keys_.insert) return false;
  auto* const keyboard = keyboard_.get();
  zwp_virtual_keyboard_v1_key(keyboard, now(), *keys_.control, WL_KEYBOARD_KEY_STATE_PRESSED);
  zwp_virtual_keyboard_v1_modifiers(keyboard, keys_.controlBit, 0, 0, 0);
  press(*keys_.insert);
  zwp_virtual_keyboard_v1_key(keyboard, now(), *keys_.control, WL_KEYBOARD_KEY_STATE_RELEASED);
  zwp_virtual_keyboard_v1_modifiers(keyboard, 0, 0, 0, 0);
  display_.willWait();
  return true;
}

void VirtualKeyboard::press(std::uint32_t key) {
  zwp_virtual_keyboard_v1_key(keyboard_.get(), now(), key, WL_KEYBOARD_KEY_STATE_PRESSED);
  zwp_virtual_keyboard_v1_key(keyboard_.get(), now(), key, WL_KEYBOARD_KEY_STATE_RELEASED);
  display_.willWait();
}

/// Gives the keyboard the keymap of the seat, so that applications see no other layout. False when
/// there is none that can be used.
bool VirtualKeyboard::useKeymapOfSeat() {
  const auto& file = seatKeymap_.file();
  if (!file) return false;
  if (uploaded_ && uploaded_.equals(file)) return true;
  const auto keymap = file.read();
  if (!keymap) return false;
  keys_ = chordKeys(*keymap);
  zwp_virtual_keyboard_v1_keymap(keyboard_.get(), WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file.file(),
                                 file.size());
  uploaded_ = KeymapFile(dup(file.file()), file.size());
  return true;
}

}  // namespace seldial::platform::wayland
