#pragma once

#include <ctime>
#include <optional>
#include <string>

namespace seldial {

/// Dates as texts of the form "2017-02-06T14:10:32+01:00", or with "Z" as the offset of GMT, in
/// the Gregorian calendar.
class ISODateFormatter {
 public:
  /// In the system's local time zone.
  [[nodiscard]] std::string stringFromDate(std::time_t date) const;

  /// Nothing when `text` is not of that form or names no existing date.
  [[nodiscard]] std::optional<std::time_t> dateFromString(const std::string& text) const;
};

/// The shared formatter, made on first use. Any thread.
[[nodiscard]] const ISODateFormatter& isoDateFormatter();

}  // namespace seldial
