#pragma once

#include <cstdint>
#include <string>

namespace seldial {

/// How a hot key is shown, as UTF-8: the glyphs of its modifiers in the order control, option,
/// shift, command, then the key's own glyph or name, or what it says in the user's keyboard
/// layout (nothing when that says nothing). `modifierFlags` are platform::ModifierFlag values.
/// Main thread.
[[nodiscard]] std::string QKStringFromKeyCode(std::uint16_t keyCode, std::uint64_t modifierFlags);

}  // namespace seldial
