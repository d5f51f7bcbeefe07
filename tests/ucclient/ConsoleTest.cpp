#include <gtest/gtest.h>

#include "ucclient/Console.h"

namespace seldial {
namespace {

TEST(Printable, TextIsUnaltered) {
  EXPECT_EQ(printable("+31 (20) 123 – é 電話 \"/\\"), "+31 (20) 123 – é 電話 \"/\\");
}

TEST(Printable, ControlCharactersAreEscaped) {
  EXPECT_EQ(printable(std::string("1\n2\t3\x1B[2J\x7F\0", 11)),
            R"(1\u000a2\u00093\u001b[2J\u007f\u0000)");
}

TEST(Printable, ControlCharactersAboveAsciiAreEscapedToo) {
  EXPECT_EQ(printable("a\xC2\x9B"
                      "2Jb"),
            R"(a\u009b2Jb)");
  EXPECT_EQ(printable("\xC2\xA0"), "\xC2\xA0");
}

TEST(Printable, ATruncatedTextDoesNoHarm) {
  EXPECT_EQ(printable("a\xC2"), "a\xC2");
  EXPECT_EQ(printable(""), "");
}

}  // namespace
}  // namespace seldial
