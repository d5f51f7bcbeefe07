// The JSON messages as the UC client sees them: what it sends, and what it makes of an answer.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "ucclient/HotKeySpelling.h"

namespace seldial {

/// The command "SetHotKey", to be sent over a connection of its own. `readDelay` in milliseconds.
[[nodiscard]] std::string setHotKeyCommand(const HotKey& hotKey, std::uint16_t readDelay);

/// One message from the dialer.
struct Message {
  enum class Kind {
    HotKeySet,     ///< the hot key is registered
    HotKeyNotSet,  ///< `text` is the reason
    Error,         ///< the dialer did not understand; `text` is what it says
    MakeCall,      ///< `text` is the number to dial
    Unknown,
  };
  Kind kind = Kind::Unknown;
  std::string text;
};

/// Reads one JSON text. Whatever is none of the messages is Unknown.
[[nodiscard]] Message messageFromJSON(const std::string& json);

/// When `line`, one line of the dialer's standard output, is a "Log" event: its message.
[[nodiscard]] std::optional<std::string> loggedMessage(const std::string& line);

}  // namespace seldial
