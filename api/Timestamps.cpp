#include "api/Timestamps.h"

#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace seldial {
namespace {

// The date and time without the offset. Not strftime, whose %Y writes the year 999 as "999".
std::string dateAndTime(const std::tm& local) {
  std::array<char, 64> text{};
  const int length = std::snprintf(text.data(), text.size(), "%04ld-%02d-%02dT%02d:%02d:%02d",
                                   local.tm_year + 1900L, local.tm_mon + 1, local.tm_mday,
                                   local.tm_hour, local.tm_min, local.tm_sec);
  return {text.data(), static_cast<std::size_t>(length)};
}

// The offset from GMT in whole minutes, as sign, hours, `separator` and minutes. Not strftime,
// whose %z writes an offset of 30 seconds west as "-0000".
std::string offsetText(const std::tm& local, const char* separator) {
  const long minutes = local.tm_gmtoff / 60;
  std::array<char, 32> text{};
  const int length =
      std::snprintf(text.data(), text.size(), "%c%02ld%s%02ld", minutes < 0 ? '-' : '+',
                    std::labs(minutes) / 60, separator, std::labs(minutes) % 60);
  return {text.data(), static_cast<std::size_t>(length)};
}

// Whether `text` matches `pattern`, in which 0 stands for any digit and + for a sign.
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

// Seconds east of GMT, from a text that matches one of the two patterns.
std::optional<int> offsetOf(const std::string& text) {
  if (text.back() == 'Z') return 0;
  const int hours = digitsAt(text, 20, 2);
  const int minutes = digitsAt(text, 23, 2);
  if (hours > 23 || minutes > 59) return {};
  const int seconds = (hours * 60 + minutes) * 60;
  return text[19] == '-' ? -seconds : seconds;
}

// localtime_r alone would keep the time zone of its first call. Without TZ, tzset() examines a
// file, which is slow.
void updateTimeZone() {
  static std::atomic<std::time_t> lastLook{-1};
  const bool isInEnvironment = std::getenv("TZ") != nullptr;
  const std::time_t now = std::time(nullptr);
  if (isInEnvironment || lastLook != now) ::tzset();
  lastLook = isInEnvironment ? -1 : now;
}

}  // namespace

std::tm localTime(std::time_t date) {
  updateTimeZone();
  std::tm local{};
  (void)::localtime_r(&date, &local);
  return local;
}

std::string messageTimestamp() {
  return messageTimestamp(std::time(nullptr));
}

std::string messageTimestamp(std::time_t date) {
  const std::tm local = localTime(date);
  return dateAndTime(local) + offsetText(local, "");
}

std::string ISODateFormatter::stringFromDate(std::time_t date) const {
  const std::tm local = localTime(date);
  const bool isGMT = std::labs(local.tm_gmtoff) < 60;
  return dateAndTime(local) + (isGMT ? "Z" : offsetText(local, ":"));
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
  const std::tm given = date;
  const std::time_t seconds = ::timegm(&date);
  // timegm turns the 30th of February into a day of March.
  const bool exists = date.tm_mon == given.tm_mon && date.tm_mday == given.tm_mday &&
                      date.tm_hour == given.tm_hour && date.tm_min == given.tm_min &&
                      date.tm_sec == given.tm_sec;
  if (!offset || !exists) return {};
  return seconds - *offset;
}

const ISODateFormatter& isoDateFormatter() {
  static const ISODateFormatter shared;
  return shared;
}

}  // namespace seldial
