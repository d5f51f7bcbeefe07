#include <gtest/gtest.h>

#include <utility>

#include "api/JSONReader.h"
#include "api/JSONValue.h"
#include "api/JSONWriter.h"
#include "tests/api/Nesting.h"

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

TEST(JSONValue, ACopyIsDeep) {
  JSONValue original(JSONDictionary{{"a", JSONArray{1, "two", 3.5, true, JSONValue()}}});
  const JSONValue copy = original;
  original.dictionary()->at("a").array()->at(1) = "changed";
  EXPECT_EQ(writeJSON(*copy.dictionary()), R"({"a":[1,"two",3.5,true,null]})");
  EXPECT_EQ(writeJSON(*original.dictionary()), R"({"a":[1,"changed",3.5,true,null]})");
}

TEST(JSONValue, AMoveLeavesNullBehind) {
  JSONValue original("text");
  const JSONValue moved = std::move(original);
  EXPECT_EQ(*moved.text(), "text");
  EXPECT_TRUE(original.isNull());  // NOLINT: looking is allowed here, null is promised
}

TEST(JSONValue, CanBeAssignedAPartOfItself) {
  JSONValue value(JSONDictionary{{"a", JSONArray{"inner"}}});
  value = value.dictionary()->at("a");
  ASSERT_NE(value.array(), nullptr);
  value = std::move(value.array()->at(0));
  ASSERT_NE(value.text(), nullptr);
  EXPECT_EQ(*value.text(), "inner");
}

TEST(JSONValue, HalfAMillionLevelsAreCopied) {
  const auto original = readJSON(nestedArrays(kDeep));
  ASSERT_TRUE(original);
  JSONValue copy;
  copy = *original;
  EXPECT_TRUE(writeJSON(*copy.dictionary()) == nestedArrays(kDeep));
}

TEST(JSONValue, HalfAMillionLevelsAreOverwritten) {
  auto value = readJSON(nestedArrays(kDeep));
  ASSERT_TRUE(value);
  *value = JSONValue(1);
  EXPECT_EQ(value->integer(), 1);
}

}  // namespace
}  // namespace seldial
