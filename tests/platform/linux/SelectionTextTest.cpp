#include <gtest/gtest.h>

#include "api/JSON.h"
#include "platform/linux/SelectionText.h"

namespace seldial::platform::linux_port {
namespace {

const std::string kReplaced = "\xEF\xBF\xBD";

TEST(SelectionText, ValidTextIsUnaltered) {
  for (const std::string text :
       {"", "+31 20 123 4567", "caf\xC3\xA9 \xE2\x82\xAC", "\xF0\x9F\x98\x80",
        "\xED\x9F\xBF\xEE\x80\x80", "\xF4\x8F\xBF\xBF"}) {
    EXPECT_EQ(repairedUtf8(text), text);
  }
  EXPECT_EQ(repairedUtf8(std::string(1, '\0')), std::string(1, '\0'));
}

TEST(SelectionText, OneNulByteAtTheEndIsNotText) {
  EXPECT_EQ(withoutTerminator(std::string("4930123\0", 8)), "4930123");
  EXPECT_EQ(withoutTerminator(std::string("a\0b\0\0", 5)), std::string("a\0b\0", 4));
  EXPECT_EQ(withoutTerminator(""), "");
}

TEST(SelectionText, SurrogatesEncodedOneByOneAreJoined) {
  EXPECT_EQ(repairedUtf8("call \xED\xA0\xBD\xED\xB8\x80 now"), "call \xF0\x9F\x98\x80 now");
  EXPECT_EQ(repairedUtf8("\xED\xA0\x80\xED\xB0\x80"), "\xF0\x90\x80\x80");
  EXPECT_EQ(repairedUtf8("\xED\xAF\xBF\xED\xBF\xBF"), "\xF4\x8F\xBF\xBF");
}

TEST(SelectionText, ALoneSurrogateIsReplacedByOneCharacter) {
  EXPECT_EQ(repairedUtf8("1\xED\xA0\xBD"
                         "2"),
            "1" + kReplaced + "2");
  EXPECT_EQ(repairedUtf8("1\xED\xB8\x80"
                         "2"),
            "1" + kReplaced + "2");
  EXPECT_EQ(repairedUtf8("\xED\xB8\x80\xED\xA0\xBD"), kReplaced + kReplaced);
  EXPECT_EQ(repairedUtf8("\xED\xA0\xBD\xED\xA0\xBD\xED\xB8\x80"), kReplaced + "\xF0\x9F\x98\x80");
}

TEST(SelectionText, BytesThatBeginNoCharacterAreReplacedOneByOne) {
  EXPECT_EQ(repairedUtf8("1\xFF\x80\xC0 2"), "1" + kReplaced + kReplaced + kReplaced + " 2");
  EXPECT_EQ(repairedUtf8("\xE0\x80\x80"), kReplaced + kReplaced + kReplaced);  // overlong
  EXPECT_EQ(repairedUtf8("\xF4\x90"), kReplaced + kReplaced);                  // above U+10FFFF
}

TEST(SelectionText, AnIncompleteCharacterIsReplacedByOne) {
  EXPECT_EQ(repairedUtf8("1\xE2\x82"), "1" + kReplaced);
  EXPECT_EQ(repairedUtf8("1\xF0\x9F\x98 2"), "1" + kReplaced + " 2");
  EXPECT_EQ(repairedUtf8("\xC3"), kReplaced);
}

TEST(SelectionText, WhateverTheBytesTheResultIsValid) {
  const std::string bytes = "1\x80\xA0\xBF\xC3\xE0\xE2\xED\xEF\xF0\xF4\xFF";
  for (const char a : bytes) {
    for (const char b : bytes) {
      for (const char c : bytes) {
        for (const char d : bytes) {
          const std::string text{a, b, c, d};
          const auto repaired = repairedUtf8(text);
          ASSERT_TRUE(isValidUTF8(repaired));
          ASSERT_EQ(repaired == text, isValidUTF8(text));
        }
      }
    }
  }
}

}  // namespace
}  // namespace seldial::platform::linux_port
