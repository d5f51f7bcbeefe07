#include "api/ISODateFormatter.h"

#include <cstdio>
#include <cstring>

#include "api/MessageTimestamp.h"

namespace seldial {

namespace {

// Whether `text` has the shape of `pattern`, in which 0 stands for a digit and + for a sign.
bool matches(const std::string& text, const char* pattern) {
  if (text.size() != std::strlen(pattern)) return false;
  for (std::size_t index = 0; index < text.size(); ++index) {
    const char character = text[index];
    const bool digit = character >= '0' && character <= '9';
    const bool sign = character == '+' || character == '-';
    if (pattern[index] == '0'   ? !digit
        : pattern[index] == '+' ? !sign
                                : character != pattern[index]) {
      return false;
    }
  }
  return true;
}

int digitsAt(const std::string& text, std::size_t position, std::size_t count) {
  int value = 0;
  for (const char digit : text.substr(position, count)) value = value * 10 + (digit - '0');
  return value;
}

// Seconds east of GMT; the text is known to have the right shape.
std::optional<int> offsetOf(const std::string& text) {
  if (text.back() == 'Z') return 0;
  const int hours = digitsAt(text, 20, 2);
  const int minutes = digitsAt(text, 23, 2);
  if (hours > 23 || minutes > 59) return {};
  const int seconds = (hours * 60 + minutes) * 60;
  return text[19] == '-' ? -seconds : seconds;
}

}  // namespace

std::string ISODateFormatter::stringFromDate(std::time_t date) const {
  std::string text = messageTimestamp(date);
  const std::size_t offset = text.size() - 5;
  if (text.compare(offset, 5, "+0000") == 0) return text.replace(offset, 5, "Z");
  return text.insert(offset + 3, ":");
}

std::optional<std::time_t> ISODateFormatter::dateFromString(const std::string& text) const {
  if (!matches(text, "0000-00-00T00:00:00Z") && !matches(text, "0000-00-00T00:00:00+00:00")) {
    return {};
  }
  const auto offset = offsetOf(text);
  std::tm date{};
  date.tm_year = digitsAt(text, 0, 4) - 1900;
  date.tm_mon = digitsAt(text, 5, 2) - 1;
  date.tm_mday = digitsAt(text, 8, 2);
  date.tm_hour = digitsAt(text, 11, 2);
  date.tm_min = digitsAt(text, 14, 2);
  date.tm_sec = digitsAt(text, 17, 2);
  const std::tm asked = date;
  const std::time_t seconds = ::timegm(&date);
  // timegm carries the 30th of February over into March.
  const bool exists = date.tm_mon == asked.tm_mon && date.tm_mday == asked.tm_mday &&
                      date.tm_hour == asked.tm_hour && date.tm_min == asked.tm_min &&
                      date.tm_sec == asked.tm_sec;
  if (!offset || !exists) return {};
  return seconds - *offset;
}

const ISODateFormatter& isoDateFormatter() {
  static const ISODateFormatter shared;
  return shared;
}

}  // namespace seldial
