#include <gtest/gtest.h>

#include <limits>

#include "api/JSON.h"
#include "tests/api/Fixtures.h"

namespace seldial {
namespace {

/// The value of {"v":TEXT}; fails the test if that is invalid.
JSONValue member(const std::string& text) {
  auto value = readJSON(R"({"v":)" + text + "}");
  EXPECT_TRUE(value && value->dictionary() != nullptr) << text;
  if (!value || value->dictionary() == nullptr) return {};
  const auto found = value->dictionary()->find("v");
  return found != value->dictionary()->end() ? std::move(found->second) : JSONValue();
}

bool isValidMember(const std::string& text) {
  return readJSON(R"({"v":)" + text + "}").has_value();
}

TEST(JSONReader, RejectsTheText42AndAcceptsTheArrayOf42) {
  EXPECT_FALSE(readJSON("42"));
  const auto value = readJSON("[42]");
  ASSERT_TRUE(value);
  ASSERT_NE(value->array(), nullptr);
  EXPECT_EQ(value->array()->at(0).integer(), 42);
}

TEST(JSONReader, RejectsAnyScalarAtTheTopLevel) {
  for (const auto* text : {"42", "-1.5e3", "\"text\"", "true", "false", "null", " 42 "}) {
    EXPECT_FALSE(readJSON(text)) << text;
  }
}

TEST(JSONReader, AcceptsEmptyContainersAndSpacesAroundThem) {
  for (const auto* text : {"{}", "[]", " \t\r\n{ }\n", "\n[\n]\n"}) {
    EXPECT_TRUE(readJSON(text)) << text;
  }
}

TEST(JSONReader, RejectsTextThatIsNotJSON) {
  for (const auto* text :
       {"",           " ",     "\n",        "hello",    "{",          "}",     "[",      "]",
        "{]",         "[}",    "{\"a\"}",   "{\"a\":}", "{\"a\":1,}", "[1,]",  "[,]",    "{a:1}",
        "{'a':1}",    "[1 2]", "{\"a\" 1}", "[\"a]",    R"(["\x"])",  "[tru]", "[True]", "[NaN]",
        "[Infinity]", "[1]//", "/**/[1]",   "[1\f]",    "[\v1]",      "{1:2}"}) {
    EXPECT_FALSE(readJSON(text)) << text;
  }
}

TEST(JSONReader, RejectsTextAfterTheValue) {
  for (const auto* text : {"{}{}", "[1][2]", "{} x", "[1],", "{}\n{}\n", "{}]"}) {
    EXPECT_FALSE(readJSON(text)) << text;
  }
}

TEST(JSONReader, RejectsARawNULWhereverItStands) {
  const std::string nul(1, '\0');
  for (const auto& text : {nul, nul + "{}", "{}" + nul, "{}" + nul + "garbage", "[1," + nul + "2]",
                           "[\"a" + nul + "b\"]", "[1" + nul}) {
    EXPECT_FALSE(readJSON(text));
  }
}

TEST(JSONReader, AnEscapedNULIsACharacterOfTheText) {
  const JSONValue value = member(R"("a\u0000b")");
  ASSERT_NE(value.text(), nullptr);
  EXPECT_EQ(*value.text(), std::string("a\0b", 3));
}

TEST(JSONReader, OneByteOrderMarkInFrontIsSkipped) {
  EXPECT_TRUE(readJSON("\xEF\xBB\xBF{}"));
  EXPECT_FALSE(readJSON("\xEF\xBB\xBF\xEF\xBB\xBF{}"));
  EXPECT_FALSE(readJSON("\xEF\xBB{}"));
  EXPECT_FALSE(readJSON(" \xEF\xBB\xBF{}"));
  EXPECT_FALSE(readJSON("{}\xEF\xBB\xBF"));
}

TEST(JSONReader, ResolvesEveryEscape) {
  const JSONValue value = member(R"("\"\\\/\b\f\n\r\t\u0041\u00e9\u20AC\ud83d\ude00")");
  ASSERT_NE(value.text(), nullptr);
  EXPECT_EQ(*value.text(), "\"\\/\b\f\n\r\tA\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
}

TEST(JSONReader, RejectsWrongEscapes) {
  for (const auto* text :
       {R"("\u12")", R"("\u12G4")", R"("\U0041")", R"("\a")", R"("\'")", "\"\\"}) {
    EXPECT_FALSE(isValidMember(text)) << text;
  }
}

TEST(JSONReader, RejectsLoneSurrogates) {
  for (const auto* text : {R"("\ud83d")", R"("\ude00")", R"("\ud83dx")", R"("\ud83d\n")",
                           R"("\ud83d\ud83d")", R"("\ude00\ud83d")"}) {
    EXPECT_FALSE(isValidMember(text)) << text;
  }
}

TEST(JSONReader, RejectsInvalidUTF8) {
  for (const auto* bytes : {"\x80", "\xC3", "\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80",
                            "\xF0\x80\x80\x80", "\xF4\x90\x80\x80", "\xFF"}) {
    EXPECT_FALSE(isValidMember("\"" + std::string(bytes) + "\"")) << testing::PrintToString(bytes);
    EXPECT_FALSE(readJSON(std::string("{}") + bytes)) << testing::PrintToString(bytes);
  }
}

TEST(JSONReader, RejectsRawControlCharactersInTexts) {
  EXPECT_FALSE(isValidMember("\"a\nb\""));
  EXPECT_FALSE(isValidMember("\"a\tb\""));
  EXPECT_FALSE(isValidMember("\"\x1F\""));
  EXPECT_TRUE(isValidMember("\"\x7F\""));
}

TEST(JSONReader, ANumberIsAnIntegerHoweverItIsWritten) {
  EXPECT_EQ(member("19").integer(), 19);
  EXPECT_EQ(member("19.0").integer(), 19);
  EXPECT_EQ(member("1.9e1").integer(), 19);
  EXPECT_EQ(member("1900E-2").integer(), 19);
  EXPECT_EQ(member("-0").integer(), 0);
  EXPECT_EQ(member("-0.0").integer(), 0);
}

TEST(JSONReader, AFractionIsNotAnIntegerEvenIfADoubleRoundsItAway) {
  EXPECT_EQ(member("19.5").integer(), std::nullopt);
  EXPECT_EQ(member("19.5").number(), 19.5);
  EXPECT_EQ(member("1.00000000000000000000000001").integer(), std::nullopt);
  EXPECT_EQ(member("9007199254740993.0").integer(), 9007199254740993);
}

TEST(JSONReader, IntegersEndWhereTheSigned64BitRangeEnds) {
  EXPECT_EQ(member("9223372036854775807").integer(), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(member("-9223372036854775808").integer(), std::numeric_limits<std::int64_t>::min());
  for (const auto* text : {"9223372036854775808", "-9223372036854775809", "18446744073709551615",
                           "18446744073709551616", "9223372036854775808.0", "1e19", "1e300"}) {
    EXPECT_EQ(member(text).integer(), std::nullopt) << text;
    EXPECT_TRUE(member(text).number()) << text;
  }
}

TEST(JSONReader, RejectsANumberThatNoDoubleHolds) {
  EXPECT_FALSE(isValidMember("1e999"));
  EXPECT_FALSE(isValidMember("-1e999"));
  EXPECT_FALSE(isValidMember("1" + std::string(400, '0')));
  EXPECT_TRUE(isValidMember("1e-999"));
  EXPECT_TRUE(isValidMember("0e999"));
}

TEST(JSONReader, RejectsNumbersThatTheGrammarDoesNotKnow) {
  for (const auto* text :
       {"01", "-", "+1", ".5", "1.", "1e", "1e+", "0x10", "1.e1", "-01", "1_000"}) {
    EXPECT_FALSE(isValidMember(text)) << text;
  }
}

TEST(JSONReader, DistinguishesTheTypes) {
  EXPECT_TRUE(member("null").isNull());
  EXPECT_EQ(member("true").boolean(), true);
  EXPECT_EQ(member("false").boolean(), false);
  EXPECT_EQ(member("1").boolean(), std::nullopt);
  EXPECT_EQ(member("true").integer(), std::nullopt);
  EXPECT_EQ(member("true").number(), std::nullopt);
  EXPECT_EQ(member("\"1\"").integer(), std::nullopt);
  EXPECT_EQ(member("1").text(), nullptr);
  EXPECT_NE(member("{}").dictionary(), nullptr);
  EXPECT_EQ(member("{}").array(), nullptr);
  EXPECT_NE(member("[]").array(), nullptr);
  EXPECT_EQ(member("[]").dictionary(), nullptr);
}

TEST(JSONReader, KeepsTheOrderOfElementsAndTheNestingOfContainers) {
  const JSONValue value = member(R"([1,{"b":[2,"three"],"c":{}},[],4])");
  ASSERT_NE(value.array(), nullptr);
  const JSONArray& array = *value.array();
  ASSERT_EQ(array.size(), 4U);
  EXPECT_EQ(array[0].integer(), 1);
  EXPECT_EQ(*array[1].dictionary()->at("b").array()->at(1).text(), "three");
  EXPECT_TRUE(array[1].dictionary()->at("c").dictionary()->empty());
  EXPECT_TRUE(array[2].array()->empty());
  EXPECT_EQ(array[3].integer(), 4);
}

TEST(JSONReader, TheLastOfTwoMembersWithTheSameKeyCounts) {
  const auto value = readJSON(R"({"a":[1,2],"b":0,"a":{"c":3}})");
  ASSERT_TRUE(value);
  ASSERT_EQ(value->dictionary()->size(), 2U);
  ASSERT_NE(value->dictionary()->at("a").dictionary(), nullptr);
  EXPECT_EQ(value->dictionary()->at("a").dictionary()->at("c").integer(), 3);
}

TEST(JSONReader, KeysAreExact) {
  const auto value = readJSON(R"({"a":1,"A":2,"":3,"\u0061b":4})");
  ASSERT_TRUE(value);
  const JSONDictionary& dictionary = *value->dictionary();
  EXPECT_EQ(dictionary.at("a").integer(), 1);
  EXPECT_EQ(dictionary.at("A").integer(), 2);
  EXPECT_EQ(dictionary.at("").integer(), 3);
  EXPECT_EQ(dictionary.at("ab").integer(), 4);
}

TEST(JSONReader, FiveMillionOpenBracketsAreAFailure) {
  EXPECT_FALSE(readJSON(std::string(kFiveMillion, '[')));
  EXPECT_FALSE(readJSON(R"({"a":)" + std::string(kFiveMillion, '[')));
  EXPECT_FALSE(readJSON(nestedArrays(kFiveMillion) + "x"));
}

TEST(JSONReader, HalfAMillionBalancedArraysAreReadAndDestroyed) {
  auto value = readJSON(nestedArrays(kDeep));
  ASSERT_TRUE(value);
  std::size_t depth = 0;
  for (const auto* array = value->dictionary()->at("a").array(); array != nullptr; ++depth) {
    array = array->empty() ? nullptr : array->front().array();
  }
  EXPECT_EQ(depth, kDeep);
}

TEST(JSONReader, HalfAMillionBalancedDictionariesAreReadAndDestroyed) {
  EXPECT_TRUE(readJSON(nestedDictionaries(kDeep)));
}

TEST(JSONReader, KeepsOnlyTheRequestedMembersWithNullInPlaceOfContainers) {
  const std::string text =
      R"({"a":{"b":1,"f":2},"b":"text","c":[[4],5],"f":6,"f":[7],"\u0067":8,"x":{"b":9},"b2":0})";
  const auto value = readJSONMembers(text, {"a", "b", "f", "g", "y"});
  ASSERT_TRUE(value);
  EXPECT_EQ(writeJSON(*value->dictionary()), R"({"a":null,"b":"text","f":null,"g":8})");
}

TEST(JSONReader, KeepsTheLastOfTwoRequestedMembers) {
  EXPECT_EQ(writeJSON(*readJSONMembers(R"({"f":[7],"f":6})", {"f"})->dictionary()), R"({"f":6})");
}

TEST(JSONReader, KeepsNothingOfAnArrayIfMembersAreRequested) {
  const auto value = readJSONMembers(R"([1,"a",{"a":1},[]])", {"a"});
  ASSERT_TRUE(value);
  ASSERT_NE(value->array(), nullptr);
  EXPECT_TRUE(value->array()->empty());
}

TEST(JSONReader, ChecksWhatItDoesNotKeepLikeTheRest) {
  EXPECT_TRUE(readJSONMembers(R"({"a":[{"b":1}],"b":"\u00e9"})", {}));
  for (const auto* text :
       {R"({"a":[{"b":1]})", R"({"a":[1e999]})", R"({"a":[1,]})", R"({"a":"\x"})",
        R"({"a":"\ud800"})", "{\"a\":\"\xFF\"}", R"({"a":1)", "[1", "42"}) {
    EXPECT_FALSE(readJSONMembers(text, {})) << text;
  }
}

TEST(JSONReader, ALongTextIsReadLikeAShortOne) {
  const std::string blanks(100'000, ' ');
  EXPECT_EQ(readJSON(blanks + "{\"a\":19.0}" + blanks)->dictionary()->at("a").integer(), 19);
  EXPECT_FALSE(readJSON(blanks + "42"));
  EXPECT_FALSE(readJSON(blanks + "{\"a\":1e999}"));
  EXPECT_FALSE(readJSON(blanks + "{}{}"));
}

}  // namespace
}  // namespace seldial
