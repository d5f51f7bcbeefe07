#include <gtest/gtest.h>

#include <utility>

#include "api/JSON.h"
#include "tests/api/Fixtures.h"

namespace seldial {
namespace {

TEST(JSONValue, IsSmall) {
  EXPECT_EQ(sizeof(JSONValue), 16U);
}

TEST(JSONValue, IsNullUntilItIsGivenAValue) {
  EXPECT_TRUE(JSONValue().isNull());
  EXPECT_FALSE(JSONValue(false).isNull());
  EXPECT_FALSE(JSONValue("").isNull());
}

TEST(JSONValue, ATextLiteralIsATextAndNoBoolean) {
  const JSONValue value = "yes";
  ASSERT_NE(value.text(), nullptr);
  EXPECT_EQ(*value.text(), "yes");
  EXPECT_EQ(value.boolean(), std::nullopt);
}

TEST(JSONValue, AnIntegerIsANumberToo) {
  EXPECT_EQ(JSONValue(7).integer(), 7);
  EXPECT_EQ(JSONValue(7).number(), 7.0);
  EXPECT_EQ(JSONValue(7.0).integer(), std::nullopt);
}

TEST(JSONValue, AMoveLeavesNullBehind) {
  JSONValue original("text");
  const JSONValue moved = std::move(original);
  EXPECT_EQ(*moved.text(), "text");
  EXPECT_TRUE(original.isNull());  // NOLINT: looking is allowed here, null is promised
}

TEST(JSONValue, CanBeAssignedAPartOfItself) {
  JSONValue value(dictionaryOf("a", arrayOf("inner")));
  value = std::move(value.dictionary()->at("a"));
  ASSERT_NE(value.array(), nullptr);
  value = std::move(value.array()->at(0));
  ASSERT_NE(value.text(), nullptr);
  EXPECT_EQ(*value.text(), "inner");
}

TEST(JSONValue, HalfAMillionLevelsAreOverwritten) {
  auto value = readJSON(nestedArrays(kDeep));
  ASSERT_TRUE(value);
  *value = JSONValue(1);
  EXPECT_EQ(value->integer(), 1);
}

}  // namespace
}  // namespace seldial
