#include "platform/macos/Utf8.h"

namespace seldial::platform::macos {
namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;

bool isHighSurrogate(std::uint32_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}

bool isLowSurrogate(std::uint32_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

char byte(std::uint32_t value) {
  return static_cast<char>(static_cast<unsigned char>(value));
}

void append(std::string& text, std::uint32_t character) {
  const auto following = [character](unsigned shift) {
    return byte(0x80U | ((character >> shift) & 0x3FU));
  };
  if (character < 0x80) {
    text += byte(character);
  } else if (character < 0x800) {
    text += {byte(0xC0U | (character >> 6U)), following(0)};
  } else if (character < 0x10000) {
    text += {byte(0xE0U | (character >> 12U)), following(6), following(0)};
  } else {
    text += {byte(0xF0U | (character >> 18U)), following(12), following(6), following(0)};
  }
}

}  // namespace

std::string utf8FromUtf16(const std::uint16_t* units, std::size_t length) {
  std::string text;
  for (std::size_t i = 0; i < length; ++i) {
    std::uint32_t character = units[i];
    if (isHighSurrogate(character) && i + 1 < length && isLowSurrogate(units[i + 1])) {
      character = 0x10000 + ((character - 0xD800) << 10U) + (units[++i] - 0xDC00U);
    } else if (isHighSurrogate(character) || isLowSurrogate(character)) {
      character = kReplacement;
    }
    append(text, character);
  }
  return text;
}

}  // namespace seldial::platform::macos
