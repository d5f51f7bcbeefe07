// What the keys of one keyboard mean, as far as hot keys and the copy keystroke need to know.
#pragma once

#include <xcb/xinput.h>

#include <array>
#include <bitset>
#include <cstdint>
#include <optional>

#include "platform/x11/Xcb.h"

namespace seldial::platform::x11 {

/// A set of keys, by X key code.
using KeySet = std::bitset<256>;

/// Bits of the server's modifier state; 0 where no key carries the modifier.
struct ModifierMasks {
  std::uint8_t control = 0;
  std::uint8_t shift = 0;
  std::uint8_t alt = 0;
  std::uint8_t super = 0;
  std::uint8_t locks = 0;  ///< CapsLock, NumLock and ScrollLock

  bool operator==(const ModifierMasks&) const = default;
};

/// The ModifierFlag values that a modifier state of the server says: control, shift, option and
/// command.
[[nodiscard]] std::uint64_t flagsFor(const ModifierMasks& masks, unsigned state);

struct KeyboardMap {
  ModifierMasks masks;
  std::array<KeySet, 8> carriers;  ///< by bit of the modifier state: the keys that carry it
  KeySet modifiers;                ///< keys that carry a modifier of any kind
  KeySet heldModifiers;            ///< those whose modifier lasts no longer than the key is held
  xcb_keycode_t control = 0;       ///< the key to press for Control; 0 when there is none
  xcb_keycode_t insert = 0;        ///< the same for Insert
};

/// The questions to the server about one keyboard, asked on construction; several can be under way.
class KeyboardMapRequest {
 public:
  KeyboardMapRequest(xcb_connection_t* xcb, xcb_input_device_id_t keyboard);

  /// Waits for the answers; call it once. Nothing when the keyboard or the server has gone.
  [[nodiscard]] std::optional<KeyboardMap> map() const;

 private:
  xcb_connection_t* xcb_;
  std::uint8_t firstKey_;
  xcb_input_get_device_key_mapping_cookie_t symbols_;
  xcb_input_get_device_modifier_mapping_cookie_t modifiers_;
};

}  // namespace seldial::platform::x11
