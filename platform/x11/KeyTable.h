// Virtual key codes, as the protocol carries them, are positions on a keyboard; so are the key
// codes of an X server whose keyboards speak evdev. This is the one table between them.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/x11/Xcb.h"

namespace seldial::platform::x11 {

/// The key of the X server at that position; nothing when no keyboard has one there.
std::optional<xcb_keycode_t> keyAtPosition(std::uint32_t virtualKeyCode);

}  // namespace seldial::platform::x11
