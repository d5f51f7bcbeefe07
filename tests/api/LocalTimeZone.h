#pragma once

#include <cstdlib>
#include <ctime>
#include <string>

namespace seldial {

/// Moves the process to a time zone (in POSIX form: "CET-1" is one hour east) while it lives.
class LocalTimeZone {
 public:
  explicit LocalTimeZone(const char* zone) {
    if (const char* before = std::getenv("TZ")) before_ = before;
    ::setenv("TZ", zone, 1);
  }
  ~LocalTimeZone() {
    if (before_.empty()) {
      ::unsetenv("TZ");
    } else {
      ::setenv("TZ", before_.c_str(), 1);
    }
  }
  LocalTimeZone(const LocalTimeZone&) = delete;
  LocalTimeZone& operator=(const LocalTimeZone&) = delete;

 private:
  std::string before_;
};

/// 13:10:32 GMT on 6 February 2017.
inline constexpr std::time_t kFebruary2017 = 1486386632;

}  // namespace seldial
