#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "api/ExactInteger.h"

namespace seldial {
namespace {

TEST(ExactInteger, WholeNumbersInEverySpelling) {
  EXPECT_EQ(exactInteger("19.0"), 19);
  EXPECT_EQ(exactInteger("-19.000"), -19);
  EXPECT_EQ(exactInteger("1.9e1"), 19);
  EXPECT_EQ(exactInteger("1.9E+1"), 19);
  EXPECT_EQ(exactInteger("190e-1"), 19);
  EXPECT_EQ(exactInteger("0.00019e5"), 19);
  EXPECT_EQ(exactInteger("10e0"), 10);
}

TEST(ExactInteger, ZeroInEverySpelling) {
  for (const auto* text : {"0.0", "-0.0", "0e5", "0e-5", "0.000e99999999999999999999"}) {
    EXPECT_EQ(exactInteger(text), 0) << text;
  }
}

TEST(ExactInteger, Fractions) {
  for (const auto* text :
       {"19.5", "-0.1", "1e-1", "0.99999999999999999999999", "1.9e0", "1e-99999999999999999999"}) {
    EXPECT_EQ(exactInteger(text), std::nullopt) << text;
  }
}

TEST(ExactInteger, TheLimitsOfTheRange) {
  EXPECT_EQ(exactInteger("9223372036854775807.0"), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(exactInteger("-9.223372036854775808e18"), std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(exactInteger("1e18"), 1'000'000'000'000'000'000);
  for (const auto* text :
       {"9223372036854775808.0", "-9223372036854775809.0", "1e19", "1e99999999999999999999"}) {
    EXPECT_EQ(exactInteger(text), std::nullopt) << text;
  }
}

TEST(ExactInteger, ManyDigitsThatTheExponentTakesBack) {
  const std::string zeros(1000, '0');
  EXPECT_EQ(exactInteger("19" + zeros + "e-1000"), 19);
  EXPECT_EQ(exactInteger("0." + zeros + "19e1002"), 19);
}

TEST(ExactInteger, TheDecimalPointMayBeTheLocalesOwn) {
  EXPECT_EQ(exactInteger("19,0"), 19);
}

}  // namespace
}  // namespace seldial
