#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <string>

#include "api/JSONTokens.h"

namespace seldial {
namespace {

std::optional<std::int64_t> integer(const std::string& token) {
  const auto value = numberFromToken(token);
  return value ? value->integer() : std::nullopt;
}

TEST(JSONNumber, WholeNumbersInEverySpelling) {
  EXPECT_EQ(integer("19.0"), 19);
  EXPECT_EQ(integer("-19.000"), -19);
  EXPECT_EQ(integer("1.9e1"), 19);
  EXPECT_EQ(integer("1.9E+1"), 19);
  EXPECT_EQ(integer("190e-1"), 19);
  EXPECT_EQ(integer("0.00019e5"), 19);
  EXPECT_EQ(integer("10e0"), 10);
}

TEST(JSONNumber, ZeroInEverySpelling) {
  for (const auto* text : {"0.0", "-0.0", "0e5", "0e-5", "0.000e99999999999999999999"}) {
    EXPECT_EQ(integer(text), 0) << text;
  }
}

TEST(JSONNumber, Fractions) {
  for (const auto* text :
       {"19.5", "-0.1", "1e-1", "0.99999999999999999999999", "1.9e0", "1e-99999999999999999999"}) {
    EXPECT_EQ(integer(text), std::nullopt) << text;
  }
}

TEST(JSONNumber, TheLimitsOfTheRange) {
  EXPECT_EQ(integer("9223372036854775807.0"), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(integer("-9.223372036854775808e18"), std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(integer("1e18"), 1'000'000'000'000'000'000);
  for (const auto* text :
       {"9223372036854775808.0", "-9223372036854775809.0", "1e19", "1e99999999999999999999"}) {
    EXPECT_EQ(integer(text), std::nullopt) << text;
  }
}

TEST(JSONNumber, ManyDigitsThatTheExponentTakesBack) {
  const std::string zeros(1000, '0');
  EXPECT_EQ(integer("19" + zeros + "e-1000"), 19);
  EXPECT_EQ(integer("0." + zeros + "19e1002"), 19);
}

TEST(JSONNumber, ADigitFarBehindTheOthersIsNotLost) {
  const std::string zeros(1000, '0');
  EXPECT_EQ(integer("19." + zeros + "1"), std::nullopt);
  // Half-way between two doubles, of which the lower one is even: one more digit decides.
  EXPECT_EQ(numberFromToken("9007199254740993.0")->number(), 9007199254740992.0);
  EXPECT_EQ(numberFromToken("9007199254740993." + zeros + "1")->number(), 9007199254740994.0);
}

TEST(JSONNumber, IsTheNearestDoubleIfItIsNotAnInteger) {
  for (const auto* text : {"0.1", "-1e-300", "1.7976931348623157e308", "4.9e-324", "2.5e-324",
                           "123456789012345678901234567890", "-2.2250738585072011e-308"}) {
    EXPECT_EQ(numberFromToken(text)->number(), std::strtod(text, nullptr)) << text;
  }
  EXPECT_EQ(numberFromToken("1e-99999999999999999999")->number(), 0.0);
}

TEST(JSONNumber, IsNothingIfNoFiniteDoubleIsNear) {
  for (const auto* text : {"1e309", "-1e309", "1.7976931348623159e308", "1e99999999999999999999"}) {
    EXPECT_FALSE(numberFromToken(text)) << text;
  }
}

}  // namespace
}  // namespace seldial
