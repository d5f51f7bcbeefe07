#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "api/JSON.h"
#include "tests/api/Fixtures.h"

namespace seldial {
namespace {

/// `text` as a member's value, between its quotes.
std::string escaped(const std::string& text) {
  const auto written = writeJSON(dictionaryOf("v", text));
  EXPECT_TRUE(written);
  if (!written) return {};
  const std::string opening = R"({"v":")";
  EXPECT_EQ(written->compare(0, opening.size(), opening), 0);
  return written->substr(opening.size(), written->size() - opening.size() - 2);
}

TEST(JSONWriter, ALineBreakIsEscapedSoThatAMessageStaysOnOneLine) {
  EXPECT_EQ(escaped("one\ntwo"), R"(one\ntwo)");
}

TEST(JSONWriter, ASlashIsEscaped) {
  EXPECT_EQ(escaped("a/b"), R"(a\/b)");
}

TEST(JSONWriter, CharactersOutsideASCIIAreRawUTF8) {
  const std::string text = "caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80";
  EXPECT_EQ(escaped(text), text);
  EXPECT_EQ(escaped("\xC2\x80\xE2\x80\xA8"), "\xC2\x80\xE2\x80\xA8");
}

TEST(JSONWriter, QuoteAndBackslashAreEscaped) {
  EXPECT_EQ(escaped("\"\\"), R"(\"\\)");
}

TEST(JSONWriter, CarriageReturnAndTabHaveShortEscapes) {
  EXPECT_EQ(escaped("\r\t"), R"(\r\t)");
}

TEST(JSONWriter, EveryOtherControlCharacterIsFourLowerCaseHexadecimalDigits) {
  EXPECT_EQ(escaped(std::string(1, '\0')), "\\u0000");
  EXPECT_EQ(escaped("\b\f"), "\\u0008\\u000c");
  EXPECT_EQ(escaped("\x1B\x1F\x7F"), "\\u001b\\u001f\\u007f");
}

TEST(JSONWriter, EveryASCIICharacterSurvivesTheRoadThereAndBack) {
  std::string text;
  for (int code = 0; code < 128; ++code) text += static_cast<char>(code);
  const auto written = writeJSON(dictionaryOf(text, text));
  ASSERT_TRUE(written);
  const auto read = readJSON(*written);
  ASSERT_TRUE(read);
  ASSERT_EQ(read->dictionary()->count(text), 1U);
  EXPECT_EQ(*read->dictionary()->at(text).text(), text);
}

TEST(JSONWriter, BooleansAreTrueAndFalse) {
  EXPECT_EQ(writeJSON(dictionaryOf("a", true)), R"({"a":true})");
  EXPECT_EQ(writeJSON(dictionaryOf("a", false)), R"({"a":false})");
}

TEST(JSONWriter, NumbersAndNull) {
  EXPECT_EQ(writeJSON(dictionaryOf("a", 19)), R"({"a":19})");
  EXPECT_EQ(writeJSON(dictionaryOf("a", std::numeric_limits<std::int64_t>::min())),
            R"({"a":-9223372036854775808})");
  EXPECT_EQ(writeJSON(dictionaryOf("a", 1.5)), R"({"a":1.5})");
  EXPECT_EQ(writeJSON(dictionaryOf("a", JSONValue())), R"({"a":null})");
}

TEST(JSONWriter, ADoubleIsReadBackUnaltered) {
  for (const double number : {0.1, -1e-300, 1.7976931348623157e308, 1.0 / 3.0}) {
    const auto written = writeJSON(dictionaryOf("a", number));
    ASSERT_TRUE(written);
    const auto read = readJSON(*written);
    ASSERT_TRUE(read) << *written;
    EXPECT_EQ(read->dictionary()->at("a").number(), number) << *written;
  }
}

TEST(JSONWriter, ContainersAreCompact) {
  EXPECT_EQ(writeJSON({}), "{}");
  EXPECT_EQ(writeJSON(dictionaryOf("a", JSONArray(), "b", JSONDictionary())), R"({"a":[],"b":{}})");
  EXPECT_EQ(writeJSON(dictionaryOf("a", arrayOf(1, "x", true), "b", dictionaryOf("c", 1, "d", 2))),
            R"({"a":[1,"x",true],"b":{"c":1,"d":2}})");
}

TEST(JSONWriter, ATextThatIsNotValidUTF8IsAFailure) {
  EXPECT_EQ(writeJSON(dictionaryOf("a", "\xFF")), std::nullopt);
  EXPECT_EQ(writeJSON(dictionaryOf("a", "cut \xE2\x82")), std::nullopt);
  EXPECT_EQ(writeJSON(dictionaryOf("a", "\xED\xA0\x80")), std::nullopt);
  EXPECT_EQ(writeJSON(dictionaryOf("\xFF", "a")), std::nullopt);
  EXPECT_EQ(writeJSON(dictionaryOf("a", arrayOf(dictionaryOf("b", "\xFF")))), std::nullopt);
}

TEST(JSONWriter, ANumberThatIsNotFiniteIsAFailure) {
  EXPECT_EQ(writeJSON(dictionaryOf("a", std::nan(""))), std::nullopt);
  EXPECT_EQ(writeJSON(dictionaryOf("a", std::numeric_limits<double>::infinity())), std::nullopt);
}

TEST(JSONWriter, HalfAMillionLevelsAreWritten) {
  const std::string text = nestedArrays(kDeep);
  const auto value = readJSON(text);
  ASSERT_TRUE(value);
  const auto written = writeJSON(*value->dictionary());
  EXPECT_TRUE(written == text);
}

TEST(JSONString, GivesTheSameTextInPiecesEachTime) {
  const std::string text(100000, '\x7F');
  const auto written = writeJSON(dictionaryOf("v", text));
  const auto string = JSONString::from(dictionaryOf("v", text));
  ASSERT_TRUE(written && string);
  for (int reading = 0; reading < 2; ++reading) {
    std::string all;
    string->forEachPiece([&all](std::string_view piece) {
      EXPECT_LE(piece.size(), 16384U);
      EXPECT_FALSE(piece.empty());
      all += piece;
      return true;
    });
    EXPECT_TRUE(all == *written);
  }
}

/// How many pieces are given to a reader that wants two.
int piecesOf(const JSONString& string) {
  int pieces = 0;
  string.forEachPiece([&pieces](std::string_view /*piece*/) { return ++pieces < 2; });
  return pieces;
}

TEST(JSONString, GivesNoPieceAfterTheLastThatWasWanted) {
  const std::string text(100000, '/');
  EXPECT_EQ(piecesOf(*JSONString::from(dictionaryOf("v", text))), 2);
  EXPECT_EQ(piecesOf(JSONString(text)), 2);
}

TEST(JSONString, KeepsATextAsItIs) {
  EXPECT_EQ(JSONString("\xFF").string(), "\xFF");
  EXPECT_EQ(JSONString("").string(), "");
}

TEST(JSONString, IsNotMadeFromWhatCannotBeWritten) {
  EXPECT_FALSE(JSONString::from(dictionaryOf("a", std::string(100000, 'x') + "\xFF")));
}

}  // namespace
}  // namespace seldial
