#pragma once

#include <string>

namespace seldial {

/// The response to an input that is not a valid command.
struct ErrorApi {
  std::string Message;

  /// One line of JSON text without its terminator, stamped with the current time. A message that
  /// cannot be serialised is dropped for a fixed text of the same kind.
  [[nodiscard]] std::string toJSONString() const;
};

}  // namespace seldial
