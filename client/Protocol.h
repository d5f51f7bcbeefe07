// The spelling of hot keys, and the JSON messages from the side of a UC client: the command that it
// sends and the messages that it receives.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace seldial {

/// A hot key as a plain value.
struct HotKey {
  std::uint16_t virtualKey = 0;  ///< a platform::VirtualKey
  /// Control, Option, Shift and Command, as platform::ModifierFlag bits.
  std::uint64_t modifierFlags = 0;

  [[nodiscard]] bool operator==(const HotKey& other) const = default;
};

/// Parses the spelling of a hot key, such as "Ctrl+Alt+D": any of the modifiers ctrl or control,
/// alt or option, shift, and super, command or cmd, and exactly one key, joined by plus signs, in
/// any order and letter case, with or without spaces. A key is a letter, a digit, a punctuation
/// mark by its position on a US keyboard ("-" or "minus"), "f1" to "f20", "space", "left",
/// "keypad0" and so on. Nothing for anything else; `error` is then one sentence that says what is
/// wrong, without a full stop.
[[nodiscard]] std::optional<HotKey> hotKeyFromSpelling(const std::string& spelling,
                                                       std::string& error);

/// The usual spelling of a hot key, such as "ctrl+alt+d"; hotKeyFromSpelling() reads it. Nothing
/// for a key that has no name.
[[nodiscard]] std::optional<std::string> hotKeySpelling(const HotKey& hotKey);

/// The command "SetHotKey", to be sent over a separate connection. `readDelay` is in milliseconds.
[[nodiscard]] std::string setHotKeyCommand(const HotKey& hotKey, std::uint16_t readDelay);

/// One message from Seldial.
struct Message {
  enum class Kind {
    HotKeySet,     ///< the hot key is registered
    HotKeyNotSet,  ///< `text` is the reason
    Error,         ///< Seldial rejected the command; `text` is the reason
    MakeCall,      ///< `text` is the number to dial
    Unknown,
  };
  Kind kind = Kind::Unknown;
  std::string text;
};

/// Reads one JSON text. Anything other than a message is Unknown.
[[nodiscard]] Message messageFromJSON(const std::string& json);

/// The message of a "Log" event; nothing if `line`, one line of Seldial's standard output, is
/// something else.
[[nodiscard]] std::optional<std::string> loggedMessage(const std::string& line);

}  // namespace seldial
