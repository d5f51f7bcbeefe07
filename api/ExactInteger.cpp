#include "api/ExactInteger.h"

#include <charconv>
#include <string>

namespace seldial {

namespace {

constexpr std::size_t kMostDigits = 19;  // of the largest signed 64-bit integer

bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

// A number taken apart: digits x 10^exponent, where the digits are those before and after the
// decimal point, without the zeros on either end.
struct Decimal {
  bool negative = false;
  std::string digits;
  std::int64_t exponent = 0;
};

std::int64_t readExponent(std::string_view text) {
  // More than any text has digits to make up for, and far from an overflow.
  constexpr std::int64_t kFarAway = 1'000'000'000'000'000;
  const bool negative = text.front() == '-';
  std::int64_t exponent = 0;
  for (const char character : text) {
    if (isDigit(character) && exponent < kFarAway) exponent = exponent * 10 + (character - '0');
  }
  return negative ? -exponent : exponent;
}

Decimal takeApart(std::string_view number) {
  Decimal decimal;
  decimal.negative = number.front() == '-';
  if (decimal.negative) number.remove_prefix(1);
  const std::size_t mark = number.find_first_of("eE");
  if (mark != std::string_view::npos) decimal.exponent = readExponent(number.substr(mark + 1));

  bool afterPoint = false;
  for (const char character : number.substr(0, mark)) {
    if (!isDigit(character)) {
      afterPoint = true;
      continue;
    }
    decimal.digits += character;
    if (afterPoint) --decimal.exponent;
  }
  while (!decimal.digits.empty() && decimal.digits.back() == '0') {
    decimal.digits.pop_back();
    ++decimal.exponent;
  }
  decimal.digits.erase(0, decimal.digits.find_first_not_of('0'));
  return decimal;
}

}  // namespace

std::optional<std::int64_t> exactInteger(std::string_view number) {
  Decimal decimal = takeApart(number);
  if (decimal.digits.empty()) return 0;
  if (decimal.exponent < 0 || decimal.digits.size() > kMostDigits) return {};
  const auto zeros = static_cast<std::uint64_t>(decimal.exponent);
  if (zeros > kMostDigits - decimal.digits.size()) return {};

  const std::string text = (decimal.negative ? "-" : "") + decimal.digits.append(zeros, '0');
  std::int64_t value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  return result.ec == std::errc() ? std::optional<std::int64_t>(value) : std::nullopt;
}

}  // namespace seldial
