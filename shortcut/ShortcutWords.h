// A recorded shortcut in words, and as the hot key that the command sets.
#pragma once

#include <QString>

#include "client/HotKey.h"
#include "hotkey/QKHotKey.h"
#include "platform/Keyboard.h"

namespace seldial {

/// "Ctrl + Alt + D": the shortcut for people who do not know or do not see the glyphs.
[[nodiscard]] QString shortcutInWords(const QKHotKey& hotKey, platform::KeyboardLayout& layout);

/// The hot key of a record.
[[nodiscard]] HotKey hotKeyOf(const QKHotKey& hotKey);

/// Whether its key is a modifier key, so that there is no key besides the modifiers.
[[nodiscard]] bool hasOnlyModifiers(const QKHotKey& hotKey);

}  // namespace seldial
