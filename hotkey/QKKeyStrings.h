// Display strings of hot keys. A program that displays no hot keys links neither this file nor the
// keyboard layout.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "platform/Keyboard.h"

namespace seldial {

/// The display string of a hot key, as UTF-8: the glyphs of its modifiers in the order Control,
/// Option, Shift, Command, then the glyph or name of the key or, if it has none, what it types in
/// the user's keyboard layout. A key that types nothing adds nothing, and neither does a left
/// modifier key, whose glyph is already there. `modifierFlags` are platform::ModifierFlag bits.
/// Main thread.
[[nodiscard]] std::string QKStringFromKeyCode(std::uint16_t keyCode, std::uint64_t modifierFlags);

/// QKStringFromKeyCode() with a layout other than the system's own.
[[nodiscard]] std::string QKStringFromKeyCode(std::uint16_t keyCode, std::uint64_t modifierFlags,
                                              platform::KeyboardLayout& layout);

/// The keys that look the same on every keyboard: a glyph or a name, UTF-8, by virtual key code.
/// Created on first use, never destroyed; any thread.
[[nodiscard]] const std::map<std::uint16_t, std::string_view>& QKKeyGlyphTable();

}  // namespace seldial
