#pragma once

#include <ctime>
#include <string>

namespace seldial {

/// The response to an input that is not a valid command.
struct ErrorApi {
  std::string Message;

  /// One line of JSON text without its terminator, stamped with the current time. A message that
  /// cannot be serialised is dropped for a fixed text of the same kind.
  [[nodiscard]] std::string toJSONString() const;

  /// The same, stamped with a given time.
  [[nodiscard]] std::string toJSONString(std::time_t now) const;
};

}  // namespace seldial
