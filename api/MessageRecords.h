// The messages between the UC client and the program, one record each. The JSON keys and constants
// are part of the protocol; keys are case-sensitive.
#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>

#include "api/JSON.h"

namespace seldial {

/// The incoming command "SetHotKey".
struct SetHotKeyApi {
  /// Represents a missing or unusable virtual key code. A client that sends this number is treated
  /// as if it had sent none.
  static constexpr std::uint16_t kNoVirtualKey = 65535;
  static constexpr std::uint16_t kDefaultReadDelay = 500;

  std::optional<std::string> Command;  ///< the value of "command", in any letter case
  bool ModifierAlt = false;
  bool ModifierCommand = false;
  bool ModifierCtrl = false;
  bool ModifierShift = false;
  std::uint16_t VirtualKey = kNoVirtualKey;
  std::uint16_t ReadDelay = kDefaultReadDelay;  ///< milliseconds

  /// Reads one JSON text. A missing or unusable field keeps its default; a text that is not valid
  /// JSON gives the default record. A top-level array is a fatal error. Any thread.
  [[nodiscard]] static SetHotKeyApi fromJSONString(const std::string& text);
};

// Outgoing messages. Each toJSONString() gives one line of compact JSON without a line terminator
// and may be called on any thread. A text that is not valid UTF-8 cannot be written. Records whose
// text may be large are consumed, so that the text is not copied.

/// The answer to "SetHotKey".
struct HotKeyStateApi {
  bool Result = false;                    ///< whether the hot key is now registered
  std::optional<std::string> FailReason;  ///< why not; written if present, even if empty

  /// Empty if FailReason cannot be written.
  [[nodiscard]] std::optional<JSONString> toJSONString() const;
};

/// The answer to an input that is not a valid command.
struct ErrorApi {
  std::string Message;

  /// Stamped with the time `now`. If Message cannot be written, the line carries a fixed text.
  [[nodiscard]] JSONString toJSONString(std::time_t now = std::time(nullptr)) &&;
};

/// A request to the client to dial.
struct MakeCallApi {
  std::optional<std::string> Number;  ///< as read from the pasteboard; written as "" if absent

  /// Empty if Number cannot be written.
  [[nodiscard]] std::optional<JSONString> toJSONString() &&;
};

/// A log line as an event.
struct LogApi {
  std::string Message;

  /// Stamped with the time `now`. If Message cannot be written, the line carries a fixed text.
  [[nodiscard]] JSONString toJSONString(std::time_t now = std::time(nullptr)) &&;
};

/// Where a number to dial came from.
enum class ClickToDialSource { CommandLine, Pasteboard, StdIO };

/// The name of a source as text, for example "Pasteboard".
[[nodiscard]] const char* rawValue(ClickToDialSource source);

/// The source with exactly this name, if any.
[[nodiscard]] std::optional<ClickToDialSource> clickToDialSource(std::string_view rawValue);

/// A number to dial and its source. It has no JSON form.
struct ClickToDialApi {
  std::optional<ClickToDialSource> Source;
  std::optional<std::string> Number;
};

}  // namespace seldial
