// A recorded shortcut in words, and as the command that sets it.
#pragma once

#include <QString>

#include "hotkey/QKHotKey.h"
#include "ucclient/HotKeySpelling.h"

namespace seldial {

/// "Ctrl + Alt + D": what the glyphs mean, for those who do not know them or do not see them.
[[nodiscard]] QString shortcutInWords(const QKHotKey& hotKey);

/// The record as the command "SetHotKey" describes it.
[[nodiscard]] HotKey describedHotKey(const QKHotKey& hotKey);

/// The modifier flags of a record for such a description.
[[nodiscard]] std::uint64_t modifierFlagsOf(const HotKey& hotKey);

/// Whether its key is a modifier key, so that it has no key besides its modifiers.
[[nodiscard]] bool hasOnlyModifiers(const QKHotKey& hotKey);

}  // namespace seldial
