// Key codes of Plasma's global shortcuts: Qt's codes for the symbols that the user's layout assigns
// to a key, with modifier bits.
#pragma once

#include <xkbcommon/xkbcommon.h>

#include <cstdint>
#include <vector>

namespace seldial::platform::wayland {

/// The codes that KWin uses for a key, an X key code, with modifiers (HotKeyModifier bits), in all
/// layouts of the keymap, without duplicates. Empty if there is none. `qtVersion` is the major
/// version of Qt that KWin uses.
[[nodiscard]] std::vector<int> qtKeys(xkb_keymap& keymap, xkb_keycode_t key,
                                      std::uint32_t modifiers, int qtVersion);

}  // namespace seldial::platform::wayland
