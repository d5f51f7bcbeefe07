// The JSON messages as a UC client sees them: the command that it sends and the messages it
// receives.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "client/HotKey.h"

namespace seldial {

/// The command "SetHotKey", to be sent over its own connection. `readDelay` in milliseconds.
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

/// Reads one JSON text. Anything else than a message is Unknown.
[[nodiscard]] Message messageFromJSON(const std::string& json);

/// The message of a "Log" event; nothing when `line`, one line of Seldial's standard output, is
/// something else.
[[nodiscard]] std::optional<std::string> loggedMessage(const std::string& line);

}  // namespace seldial
