// Keys as Plasma's global shortcuts name them: by Qt's codes for what the user's layout puts on the
// key, with modifier bits.
#pragma once

#include <xkbcommon/xkbcommon.h>

#include <cstdint>
#include <vector>

namespace seldial::platform::wayland {

/// The codes under which KWin knows a key, an X key code, while the modifiers (HotKeyModifier bits)
/// are held, in every layout of the keymap, each code once. Empty where it has none. `qtVersion` is
/// the major version of Qt that KWin uses.
[[nodiscard]] std::vector<int> qtKeys(xkb_keymap& keymap, xkb_keycode_t key,
                                      std::uint32_t modifiers, int qtVersion);

}  // namespace seldial::platform::wayland
