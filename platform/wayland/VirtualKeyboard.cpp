#include "platform/wayland/VirtualKeyboard.h"

#include <unistd.h>

#include <chrono>

#include "virtual-keyboard-unstable-v1-client.h"

namespace seldial::platform::wayland {
namespace {

/// The difference between the key codes of XKB and those of evdev.
constexpr std::uint32_t kFirstKey = 8;

template <class Visit>
void visitKeys(xkb_keymap* keymap, Visit visit) {
  xkb_keymap_key_for_each(
      keymap,
      [](xkb_keymap* /*keymap*/, xkb_keycode_t key, void* function) {
        (*static_cast<Visit*>(function))(key);
      },
      &visit);
}

bool hasAt(xkb_keymap* keymap, xkb_keycode_t key, xkb_layout_index_t layout,
           xkb_level_index_t level, xkb_keysym_t wanted) {
  const xkb_keysym_t* symbols = nullptr;
  const int count = xkb_keymap_key_get_syms_by_level(keymap, key, layout, level, &symbols);
  return count == 1 && *symbols == wanted;
}

/// The first key that gives the symbol without a modifier in the first layout, as evdev numbers it.
std::optional<std::uint32_t> findKey(xkb_keymap* keymap, xkb_keysym_t symbol) {
  std::optional<std::uint32_t> found;
  visitKeys(keymap, [&](xkb_keycode_t key) {
    if (!found && key >= kFirstKey && hasAt(keymap, key, 0, 0, symbol)) found = key - kFirstKey;
  });
  return found;
}

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
                                                                        display.seat())) {}

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

bool VirtualKeyboard::useKeymapOfSeat() {
  const KeymapFile& file = seatKeymap_.file();
  if (!file) return false;
  if (uploaded_ && uploaded_.equals(file)) return true;
  const auto keymap = file.read();
  if (!keymap) return false;
  const auto control = xkb_keymap_mod_get_index(keymap.get(), XKB_MOD_NAME_CTRL);
  auto left = findKey(keymap.get(), XKB_KEY_Control_L);
  keys_ = {left ? left : findKey(keymap.get(), XKB_KEY_Control_R),
           findKey(keymap.get(), XKB_KEY_Insert), findKey(keymap.get(), XKB_KEY_XF86Copy),
           control != XKB_MOD_INVALID ? 1U << control : 0U};
  zwp_virtual_keyboard_v1_keymap(keyboard_.get(), WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file.file(),
                                 file.size());
  uploaded_ = KeymapFile(dup(file.file()), file.size());
  return true;
}

}  // namespace seldial::platform::wayland
