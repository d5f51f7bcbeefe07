#pragma once

#include <optional>
#include <string>

namespace seldial {

/// The answer to "SetHotKey".
struct HotKeyStateApi {
  bool Result = false;                    ///< whether the hot key is now registered
  std::optional<std::string> FailReason;  ///< why it is not; written whenever it has a value

  /// One line of JSON text without its terminator; nothing when it cannot be serialised.
  [[nodiscard]] std::optional<std::string> toJSONString() const;
};

}  // namespace seldial
