// Dates as text, always in the Gregorian calendar with ASCII digits.
#pragma once

#include <ctime>
#include <optional>
#include <string>

namespace seldial {

/// `date` in the local time zone, which may change while the program runs: a change of TZ counts at
/// once, one of the system's time zone within a second. Any thread.
[[nodiscard]] std::tm localTime(std::time_t date);

/// The local time in the format of the messages, "2017-02-06T14:10:32+0100": the current time, or
/// `date`. An offset of less than a minute is "+0000". Any thread.
[[nodiscard]] std::string messageTimestamp();
[[nodiscard]] std::string messageTimestamp(std::time_t date);

/// Reads and writes dates as "2017-02-06T14:10:32+01:00", or with "Z" if the offset is less than a
/// minute. Any thread.
class ISODateFormatter {
 public:
  /// In the system's local time zone.
  [[nodiscard]] std::string stringFromDate(std::time_t date) const;

  /// Empty if `text` has another form or the date does not exist.
  [[nodiscard]] std::optional<std::time_t> dateFromString(const std::string& text) const;
};

/// The shared formatter, made on first use.
[[nodiscard]] const ISODateFormatter& isoDateFormatter();

}  // namespace seldial
