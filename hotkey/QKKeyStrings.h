// How hot keys are shown. A program that shows none does not link this file, nor the keyboard
// layout.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "platform/Keyboard.h"

namespace seldial {

/// How a hot key is shown, as UTF-8: the glyphs of its modifiers in the order Control, Option,
/// Shift, Command, then the key's own glyph or name, otherwise what it types in the user's keyboard
/// layout. A key that types nothing adds nothing, and neither does a left modifier key, whose glyph
/// is there already. `modifierFlags` are platform::ModifierFlag bits. Main thread.
[[nodiscard]] std::string QKStringFromKeyCode(std::uint16_t keyCode, std::uint64_t modifierFlags);

/// QKStringFromKeyCode() with a layout other than the system's own.
[[nodiscard]] std::string QKStringFromKeyCode(std::uint16_t keyCode, std::uint64_t modifierFlags,
                                              platform::KeyboardLayout& layout);

/// The keys that look the same on every keyboard: a glyph or a name, UTF-8, by virtual key code.
/// Made on first use, never destroyed; any thread.
[[nodiscard]] const std::map<std::uint16_t, std::string_view>& QKKeyGlyphTable();

}  // namespace seldial
