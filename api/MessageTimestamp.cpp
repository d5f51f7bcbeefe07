#include "api/MessageTimestamp.h"

#include <array>

namespace seldial {

std::string messageTimestamp() {
  return messageTimestamp(std::time(nullptr));
}

std::string messageTimestamp(std::time_t date) {
  ::tzset();  // localtime_r alone would keep the zone of its first call
  std::tm local{};
  (void)::localtime_r(&date, &local);
  std::array<char, 64> text{};
  const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S%z", &local);
  return {text.data(), length};
}

}  // namespace seldial
