#include "api/JSONTokens.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace seldial {
namespace {

// More significant digits than this never change the nearest double, as long as it is known whether
// there are any. (767 is the most digits that the midpoint of two doubles can have.)
constexpr std::size_t kMaxDigits = 800;
constexpr std::size_t kMaxIntegerDigits = 19;  // of a signed 64-bit integer

bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

// A number as digits × 10^exponent. The digits neither begin nor end with a zero; the number zero
// has no digits.
struct Decimal {
  bool negative = false;
  std::string digits;
  std::int64_t exponent = 0;
};

std::int64_t exponentFrom(std::string_view text) {
  // Larger than the number of digits of any text, but too small to overflow.
  constexpr std::int64_t kMaxExponent = 1'000'000'000'000'000;
  std::int64_t exponent = 0;
  for (const char character : text) {
    if (isDigit(character) && exponent < kMaxExponent) exponent = exponent * 10 + (character - '0');
  }
  return text.front() == '-' ? -exponent : exponent;
}

// Sets the digits from a mantissa without sign, and counts their places into the exponent.
void readMantissa(std::string_view mantissa, Decimal& decimal) {
  std::string& digits = decimal.digits;
  bool afterPoint = false;
  bool truncated = false;
  for (const char character : mantissa) {
    if (character == '.') {
      afterPoint = true;
      continue;
    }
    if (afterPoint) --decimal.exponent;
    if (digits.empty() && character == '0') continue;
    if (digits.size() < kMaxDigits) {
      digits += character;
    } else {
      ++decimal.exponent;
      truncated = truncated || character != '0';
    }
  }
  if (truncated) {  // one more digit represents all that were dropped
    digits += '1';
    --decimal.exponent;
  }
  while (!digits.empty() && digits.back() == '0') {
    digits.pop_back();
    ++decimal.exponent;
  }
}

Decimal decimalFrom(std::string_view token) {
  Decimal decimal;
  decimal.negative = token.front() == '-';
  if (decimal.negative) token.remove_prefix(1);
  const std::size_t mark = token.find_first_of("eE");
  if (mark != std::string_view::npos) decimal.exponent = exponentFrom(token.substr(mark + 1));
  readMantissa(token.substr(0, mark), decimal);
  return decimal;
}

std::optional<std::int64_t> integerFrom(const Decimal& decimal) {
  if (decimal.digits.empty()) return 0;
  if (decimal.exponent < 0 || decimal.digits.size() > kMaxIntegerDigits) return {};
  const auto zeros = static_cast<std::uint64_t>(decimal.exponent);
  if (zeros > kMaxIntegerDigits - decimal.digits.size()) return {};
  const std::string text = (decimal.negative ? "-" : "") + decimal.digits + std::string(zeros, '0');
  std::int64_t value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  return result.ec == std::errc() ? std::optional<std::int64_t>(value) : std::nullopt;
}

double doubleFrom(const Decimal& decimal) {
  // Without a decimal point, which strtod would expect in the form of the locale.
  const std::string text =
      (decimal.negative ? "-" : "") + decimal.digits + "e" + std::to_string(decimal.exponent);
  return std::strtod(text.c_str(), nullptr);
}

constexpr std::uint32_t kNoCodeUnit = 0xFFFFFFFF;

// The code unit of an escape of the form \uXXXX that `text` begins with.
std::uint32_t codeUnit(std::string_view text) {
  if (text.size() < 6 || text[0] != '\\' || text[1] != 'u') return kNoCodeUnit;
  std::uint32_t unit = 0;
  const char* const end = text.data() + 6;
  const auto result = std::from_chars(text.data() + 2, end, unit, 16);
  return result.ec == std::errc() && result.ptr == end ? unit : kNoCodeUnit;
}

bool isHighSurrogate(std::uint32_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isLowSurrogate(std::uint32_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

void appendUTF8(std::uint32_t code, std::string& text) {
  const auto append = [&text](std::uint32_t byte) { text += static_cast<char>(byte); };
  if (code < 0x80) return append(code);
  if (code < 0x800) {
    append(0xC0U | (code >> 6U));
  } else if (code < 0x10000) {
    append(0xE0U | (code >> 12U));
    append(0x80U | ((code >> 6U) & 0x3FU));
  } else {
    append(0xF0U | (code >> 18U));
    append(0x80U | ((code >> 12U) & 0x3FU));
    append(0x80U | ((code >> 6U) & 0x3FU));
  }
  append(0x80U | (code & 0x3FU));
}

constexpr std::string_view kShortEscapes = "\"\\/bfnrt";
constexpr std::string_view kShortEscaped = "\"\\/\b\f\n\r\t";

void appendUnescaped(std::string_view escape, std::string& text) {
  if (escape.size() == 2) {
    text += kShortEscaped[kShortEscapes.find(escape[1])];
  } else if (escape.size() == 6) {
    appendUTF8(codeUnit(escape), text);
  } else {
    const std::uint32_t high = codeUnit(escape) - 0xD800;
    const std::uint32_t low = codeUnit(escape.substr(6)) - 0xDC00;
    appendUTF8(0x10000 + (high << 10U) + low, text);
  }
}

}  // namespace

std::optional<JSONValue> numberFromToken(std::string_view token) {
  const Decimal decimal = decimalFrom(token);
  if (const auto integer = integerFrom(decimal)) return *integer;
  const double number = doubleFrom(decimal);
  return std::isfinite(number) ? std::optional<JSONValue>(number) : std::nullopt;
}

bool isFiniteNumber(std::string_view token) {
  constexpr std::size_t kAlwaysFinite = 300;  // without an exponent, less than any double's limit
  if (token.size() <= kAlwaysFinite && token.find_first_of("eE") == std::string_view::npos)
    return true;
  return numberFromToken(token).has_value();
}

std::size_t escapeLength(std::string_view text) {
  if (text.size() < 2) return 0;
  if (text[1] != 'u') return kShortEscapes.find(text[1]) != std::string_view::npos ? 2 : 0;
  const std::uint32_t unit = codeUnit(text);
  if (unit == kNoCodeUnit || isLowSurrogate(unit)) return 0;
  if (!isHighSurrogate(unit)) return 6;
  return isLowSurrogate(codeUnit(text.substr(6))) ? 12 : 0;
}

std::string textFromToken(std::string_view token) {
  std::string text;
  text.reserve(token.size());
  while (!token.empty()) {
    const std::size_t plain = std::min(token.find('\\'), token.size());
    text += token.substr(0, plain);
    token.remove_prefix(plain);
    if (token.empty()) break;
    const std::size_t length = escapeLength(token);
    appendUnescaped(token.substr(0, length), text);
    token.remove_prefix(length);
  }
  return text;
}

}  // namespace seldial
