// The key codes of display servers and the virtual key codes of the same places on the keyboard.
#pragma once

#include <cstdint>
#include <optional>

namespace seldial::platform::linux_port {

/// The X key code for a virtual key code, where the server uses evdev's key codes. Nothing where no
/// keyboard has such a key or its code is too large for X.
std::optional<std::uint8_t> keyAtPosition(std::uint32_t virtualKeyCode);

/// The virtual key code for a key code of an X server, or of another display server that adds 8 to
/// evdev codes and is not limited to 255. Nothing where no virtual key code stands for the key.
std::optional<std::uint16_t> virtualKeyAtPosition(std::uint32_t key);

}  // namespace seldial::platform::linux_port
