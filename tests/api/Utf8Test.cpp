#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "api/JSON.h"

namespace seldial {
namespace {

using namespace std::string_view_literals;

/// Any number below 2^21 in the form for so many bytes, whether it is allowed or not.
std::string encoded(std::uint32_t code, int length) {
  constexpr std::uint32_t kLeads[] = {0, 0, 0xC0, 0xE0, 0xF0};
  std::string bytes;
  for (int rest = 1; rest < length; ++rest) {
    bytes.insert(bytes.begin(), static_cast<char>(0x80U | (code & 0x3FU)));
    code >>= 6U;
  }
  bytes.insert(bytes.begin(), static_cast<char>(kLeads[length] | code));
  return bytes;
}

int minLength(std::uint32_t code) {
  if (code < 0x80) return 1;
  if (code < 0x800) return 2;
  return code < 0x10000 ? 3 : 4;
}

TEST(Utf8, EveryCodePointIsValidInItsShortestFormExceptSurrogates) {
  for (std::uint32_t code = 0; code < 0x200000; ++code) {
    const bool character = code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
    ASSERT_EQ(isValidUTF8(encoded(code, minLength(code))), character) << code;
  }
}

TEST(Utf8, OverlongFormsAreInvalid) {
  for (std::uint32_t code = 0; code < 0x10000; ++code) {
    for (int length = minLength(code) + 1; length <= 4; ++length) {
      ASSERT_FALSE(isValidUTF8(encoded(code, length))) << code << " in " << length;
    }
  }
}

TEST(Utf8, EmptyAndNULAreValid) {
  EXPECT_TRUE(isValidUTF8(""));
  EXPECT_TRUE(isValidUTF8("\0"sv));
}

TEST(Utf8, ATruncatedCharacterIsInvalid) {
  const std::string text = "\xF0\x9F\x98\x80";
  for (std::size_t length = 1; length < text.size(); ++length) {
    EXPECT_FALSE(isValidUTF8(text.substr(0, length))) << length;
    EXPECT_FALSE(isValidUTF8(text.substr(length))) << length;
  }
}

TEST(Utf8, BytesThatBeginNoCharacterAreInvalid) {
  for (int byte = 0x80; byte < 0x100; ++byte) {
    EXPECT_FALSE(isValidUTF8(std::string(1, static_cast<char>(byte)) + "abc")) << byte;
  }
}

TEST(Utf8, AWrongByteIsFoundAtEveryPlaceOfALongText) {
  const std::string valid = std::string(20, 'a') + "\xE2\x82\xAC" + std::string(20, 'b');
  EXPECT_TRUE(isValidUTF8(valid));
  for (std::size_t place = 0; place <= valid.size(); ++place) {
    std::string wrong = valid;
    wrong.insert(place, 1, '\xFF');
    EXPECT_FALSE(isValidUTF8(wrong)) << place;
  }
}

}  // namespace
}  // namespace seldial
