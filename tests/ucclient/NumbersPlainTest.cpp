// Finding numbers without libphonenumber, as on macOS.
#include <gtest/gtest.h>

#include "ucclient/Numbers.h"

namespace seldial {
namespace {

/// "NUMBER", with a question mark if it is not certain; empty without one.
std::string found(const std::string& selection) {
  const FoundNumbers all = findNumbers(selection, "NL");
  if (all.numbers.empty()) return "";
  EXPECT_EQ(all.numbers.size(), 1U);
  return all.numbers.front().written + (all.certain ? "" : "?");
}

TEST(NumbersPlain, AnInternationalNumberAloneIsCertain) {
  for (const char* const text :
       {"+31 20 123-4567", " +31.20/1234567\u00A0", "\uFF0B31\u202F201234567"}) {
    EXPECT_EQ(found(text), "+31201234567") << text;
  }
  EXPECT_EQ(findNumbers("+31 20 1234567", "").numbers.front().international, "+31201234567");
}

TEST(NumbersPlain, AnyOtherNumberMustBeConfirmed) {
  EXPECT_EQ(found("020 123 4567"), "0201234567?");
  EXPECT_EQ(found("112"), "112?");
  EXPECT_EQ(found("+31 (0)20 1234567"), "+310201234567?");
  EXPECT_EQ(found("+31 20 1234\n5678"), "+312012345678?");
  EXPECT_EQ(found("+31 20"), "+3120?");
  EXPECT_EQ(found("*21#"), "*21#?");
}

TEST(NumbersPlain, NothingElseIsANumber) {
  for (const char* const text : {"", "Tel. +31 20 1234567", "5", "+31 20 1234567 +31 20 7654321",
                                 "1234567890123456", "hello",
                                 "\xFF"
                                 "112"}) {
    EXPECT_EQ(found(text), "") << text;
  }
  EXPECT_EQ(found(std::string(kMaxSelectionLength, ' ') + "112"), "");
}

TEST(NumbersPlain, RegionsAreTwoCapitals) {
  EXPECT_TRUE(isKnownRegion("NL"));
  for (const char* const region : {"nl", "N", "NLD", "31", ""}) EXPECT_FALSE(isKnownRegion(region));
}

}  // namespace
}  // namespace seldial
