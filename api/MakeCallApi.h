#pragma once

#include <optional>
#include <string>

namespace seldial {

/// Asks the client to dial.
struct MakeCallApi {
  std::optional<std::string> Number;  ///< as taken from the pasteboard; written as "" without one

  /// One line of JSON text without its terminator; nothing when it cannot be serialised.
  [[nodiscard]] std::optional<std::string> toJSONString() const;
};

}  // namespace seldial
