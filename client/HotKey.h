// A hot key as people write it and as the command "SetHotKey" carries it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace seldial {

/// A plain value.
struct HotKey {
  std::uint16_t virtualKey = 0;  ///< a platform::VirtualKey
  std::uint64_t modifierFlags =
      0;  ///< platform::ModifierFlag bits of Control, Option, Shift, Command

  [[nodiscard]] bool operator==(const HotKey& other) const = default;
};

/// Reads what a person writes for a hot key, such as "Ctrl+Alt+D": any of the modifiers ctrl or
/// control, alt or option, shift, and super, command or cmd, and exactly one key, joined by plus
/// signs, in any order and letter case, with or without blanks. A key is a letter, a digit, a
/// punctuation mark by its place on a US keyboard ("-" or "minus"), "f1" to "f20", "space", "left",
/// "keypad0" and so on. Nothing for anything else; `error` is then one sentence that says what is
/// wrong, without a full stop.
[[nodiscard]] std::optional<HotKey> hotKeyFromSpelling(const std::string& spelling,
                                                       std::string& error);

/// The usual spelling of a hot key, such as "ctrl+alt+d"; hotKeyFromSpelling() reads it. Nothing
/// for a key that has no name.
[[nodiscard]] std::optional<std::string> spellingOfHotKey(const HotKey& hotKey);

}  // namespace seldial
