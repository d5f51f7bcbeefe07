// The modifiers of one keyboard, and the keys for copy keystrokes.
#pragma once

#include <xcb/xinput.h>

#include <array>
#include <bitset>
#include <cstdint>
#include <optional>

#include "platform/VirtualKeys.h"
#include "platform/x11/Xcb.h"

namespace seldial::platform::x11 {

/// A set of keys, by X key code.
using KeySet = std::bitset<256>;

/// Bits of the server's modifier state; 0 where no key carries the modifier.
struct ModifierMasks {
  std::array<std::uint8_t, kModifiers.size()> bits{};  ///< by ModifierIndex
  std::uint8_t locks = 0;                              ///< Caps Lock, Num Lock and Scroll Lock

  /// The ModifierFlag bits that a modifier state means. Caps Lock is not among them.
  [[nodiscard]] std::uint64_t flagsFor(unsigned state) const;

  /// The modifier state that HotKeyModifier bits stand for; nothing where no key carries one of
  /// them. Caps Lock is ignored.
  [[nodiscard]] std::optional<std::uint8_t> stateFor(std::uint32_t hotKeyModifiers) const;

  bool operator==(const ModifierMasks&) const = default;
};

/// The keys of one keyboard.
struct KeyboardMap {
  ModifierMasks masks;
  std::array<KeySet, 8> carriers;  ///< the keys that carry a modifier, by bit of the state
  KeySet modifiers;                ///< keys that carry a modifier of any kind
  KeySet heldModifiers;            ///< those whose modifier is set only while the key is held
  xcb_keycode_t control = 0;       ///< the key to press for Control; 0 when there is none
  xcb_keycode_t insert = 0;        ///< the key to press for Insert; 0 when there is none
  xcb_keycode_t copy = 0;          ///< the key to press for Copy; 0 when there is none
};

/// Requests the map of one keyboard from the server, on construction; several can be under way.
class KeyboardMapRequest {
 public:
  KeyboardMapRequest(xcb_connection_t* xcb, xcb_input_device_id_t keyboard);

  /// Waits for the replies; call it once. Nothing when the keyboard or the server is gone.
  [[nodiscard]] std::optional<KeyboardMap> map() const;

 private:
  xcb_connection_t* xcb_;
  std::uint8_t firstKey_;
  xcb_input_get_device_key_mapping_cookie_t symbols_;
  xcb_input_get_device_modifier_mapping_cookie_t modifiers_;
};

}  // namespace seldial::platform::x11
