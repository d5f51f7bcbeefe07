// Maps the key codes of display servers to virtual key codes and back, by their position on the
// keyboard.
#pragma once

#include <cstdint>
#include <optional>

namespace seldial::platform::linux_port {

/// The X key code for a virtual key code, for servers that use evdev's key codes. Nothing if no
/// keyboard has such a key or its code is too large for X.
std::optional<std::uint8_t> keyAtPosition(std::uint32_t virtualKeyCode);

/// The virtual key code for a key code of an X server, or of another display server that adds 8 to
/// evdev codes and is not limited to 255. Nothing if the key has no virtual key code.
std::optional<std::uint16_t> virtualKeyAtPosition(std::uint32_t key);

}  // namespace seldial::platform::linux_port
