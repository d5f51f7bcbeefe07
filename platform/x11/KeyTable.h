// Virtual key codes, as the protocol carries them, are positions on a keyboard; so are the key
// codes of an X server whose keyboards speak evdev. This is the one table between them.
#pragma once

#include <cstdint>
#include <optional>

namespace seldial::platform::x11 {

/// The key of the X server at that position; nothing when no keyboard has one there.
std::optional<std::uint8_t> keyAtPosition(std::uint32_t virtualKeyCode);

/// The virtual key code of a key, by its key code in an X server or in another display server that
/// counts keys alike, but beyond 255; nothing when no virtual key code stands for it.
std::optional<std::uint16_t> virtualKeyAtPosition(std::uint32_t key);

}  // namespace seldial::platform::x11
