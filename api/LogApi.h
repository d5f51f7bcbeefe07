#pragma once

#include <ctime>
#include <string>

namespace seldial {

/// A log line as an event.
struct LogApi {
  std::string Message;

  /// One line of JSON text without its terminator, stamped with the current time. A message that
  /// cannot be serialised is dropped for a fixed text of the same kind. Any thread.
  [[nodiscard]] std::string toJSONString() const;

  /// The same, stamped with a given time.
  [[nodiscard]] std::string toJSONString(std::time_t now) const;
};

}  // namespace seldial
