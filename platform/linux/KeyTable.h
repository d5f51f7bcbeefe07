// Maps the key codes of display servers to virtual key codes and back, by their position on the
// keyboard, and says which of them can be hot keys.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/VirtualKeys.h"

namespace seldial::platform::linux_port {

/// The X key code for a virtual key code, for servers that use evdev's key codes. Nothing if no
/// keyboard has such a key or its code is too large for X.
std::optional<std::uint8_t> keyAtPosition(std::uint32_t virtualKeyCode);

/// The virtual key code for a key code of an X server, or of another display server that adds 8 to
/// evdev codes and is not limited to 255. Nothing if the key has no virtual key code.
std::optional<std::uint16_t> virtualKeyAtPosition(std::uint32_t key);

/// The modifiers of a hot key; Caps Lock is not one of them.
inline constexpr std::uint32_t kHotKeyModifiers =
    kHotKeyCommand | kHotKeyShift | kHotKeyOption | kHotKeyControl;

/// Whether a virtual key code is that of a modifier key, Caps Lock or Num Lock.
[[nodiscard]] bool isModifierOrLockKey(std::uint32_t keyCode);

/// Whether a virtual key code with HotKeyModifier bits can be a hot key: it has a key code, is not
/// a modifier or lock key, and it is not the copy keystroke, Ctrl+Insert, which the hot key would
/// take from the application that is to copy.
[[nodiscard]] bool canBeBound(std::uint32_t keyCode, std::uint32_t modifiers);

}  // namespace seldial::platform::linux_port
