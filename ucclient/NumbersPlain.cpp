// Finding numbers without libphonenumber: the whole selection must be one number.
#include <algorithm>

#include "ucclient/Numbers.h"

namespace seldial {
namespace {

/// The maximum number of digits of an international number (ITU-T E.164), and the minimum for which
/// the user is asked.
constexpr std::ptrdiff_t kMaxDigits = 15;
constexpr std::ptrdiff_t kMinDigits = 2;

}  // namespace

bool isKnownRegion(const std::string& region) {
  return region.size() == 2 &&
         std::all_of(region.begin(), region.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
}

FoundNumbers findNumbers(const std::string& selection, const std::string& /*region*/) {
  if (selection.size() > kMaxSelectionLength) return {};
  const std::string text = normalisedText(selection);
  const auto digits =
      std::count_if(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
  const bool isNumber = text.find_first_not_of("+0123456789*# -./()\n") == std::string::npos &&
                        text.rfind('+') == text.find('+');
  if (!isNumber || digits < kMinDigits || digits > kMaxDigits) return {};
  FoundNumber number;
  number.written = dialableCharacters(text);
  const bool international = number.written.front() == '+';
  if (international) number.international = number.written;
  // A zero in brackets may have to be omitted, and a line break may end the number.
  const bool certain =
      international && digits > 6 && text.find_first_of("(\n") == std::string::npos;
  return {{number}, certain};
}

}  // namespace seldial
