#include <gtest/gtest.h>

#include "api/JSON.h"
#include "api/KeyPath.h"

namespace seldial {
namespace {

class KeyPath : public testing::Test {
 protected:
  ~KeyPath() override { keyPathDelimiter = "."; }

  const JSONDictionary& in(const char* text) {
    value_ = readJSON(text);
    return *value_->dictionary();
  }

 private:
  std::optional<JSONValue> value_;
};

TEST_F(KeyPath, AKeyIsFoundExactlyAndCaseSensitively) {
  const JSONValue* value = valueForKeyPath("virtualkey", in(R"({"virtualkey":19})"));
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(value->integer(), 19);
  EXPECT_EQ(valueForKeyPath("virtualkey", in(R"({"VirtualKey":19})")), nullptr);
}

TEST_F(KeyPath, APathOfTwoKeysWalksIntoADictionaryOnly) {
  const JSONValue* value = valueForKeyPath("a.b", in(R"({"a":{"b":1}})"));
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(value->integer(), 1);
  EXPECT_EQ(valueForKeyPath("a.b", in(R"({"a":1})")), nullptr);
  EXPECT_EQ(valueForKeyPath("a.b", in(R"({"a":[{"b":1}]})")), nullptr);
}

TEST_F(KeyPath, TheDotAlwaysSplits) {
  EXPECT_EQ(valueForKeyPath("a.b", in(R"({"a.b":1})")), nullptr);
}

TEST_F(KeyPath, AKeyGivesTheWholeInnerDictionary) {
  const JSONValue* value = valueForKeyPath("a", in(R"({"a":{"b":1}})"));
  ASSERT_NE(value, nullptr);
  ASSERT_NE(value->dictionary(), nullptr);
  EXPECT_EQ(value->dictionary()->at("b").integer(), 1);
}

TEST_F(KeyPath, WithAnotherDelimiterADottedPathIsASingleKey) {
  keyPathDelimiter = "/";
  const JSONValue* value = valueForKeyPath("a.b", in(R"({"a.b":1})"));
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(value->integer(), 1);
  EXPECT_NE(valueForKeyPath("a/b", in(R"({"a":{"b":1}})")), nullptr);
}

TEST_F(KeyPath, ADelimiterCanBeGivenForOneLookup) {
  EXPECT_NE(valueForKeyPath("a::b", "::", in(R"({"a":{"b":1}})")), nullptr);
  EXPECT_EQ(valueForKeyPath("a.b", "::", in(R"({"a":{"b":1}})")), nullptr);
  EXPECT_NE(valueForKeyPath("a.b", "", in(R"({"a.b":1})")), nullptr);
}

TEST_F(KeyPath, EmptyPiecesAreKeys) {
  EXPECT_NE(valueForKeyPath("a..b", in(R"({"a":{"":{"b":1}}})")), nullptr);
  EXPECT_NE(valueForKeyPath("", in(R"({"":1})")), nullptr);
  EXPECT_NE(valueForKeyPath("a.", in(R"({"a":{"":1}})")), nullptr);
  EXPECT_EQ(valueForKeyPath("", in(R"({"a":1})")), nullptr);
}

TEST_F(KeyPath, NothingIsInAnEmptyDictionary) {
  EXPECT_EQ(valueForKeyPath("a", in("{}")), nullptr);
  EXPECT_EQ(valueForKeyPath("a.b", in(R"({"a":{}})")), nullptr);
}

TEST_F(KeyPath, AMissingKeyOnTheWayGivesNothing) {
  EXPECT_EQ(valueForKeyPath("a.b.c", in(R"({"a":{"x":{"c":1}}})")), nullptr);
}

TEST_F(KeyPath, ANullIsGivenAsNull) {
  const JSONValue* value = valueForKeyPath("a", in(R"({"a":null})"));
  ASSERT_NE(value, nullptr);
  EXPECT_TRUE(value->isNull());
  EXPECT_EQ(valueForKeyPath("a.b", in(R"({"a":null})")), nullptr);
}

TEST_F(KeyPath, WithoutAnyKeyItGivesNothingAndSaysSo) {
  testing::internal::CaptureStdout();
  EXPECT_EQ(valueForKeys({}, "a.b", in(R"({"a":{"b":1}})")), nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "[KeyPath] Unable to use keyPath 'a.b' as key on type: String\n");
}

struct Readable {
  static std::optional<Readable> fromJSONDictionary(const JSONDictionary& dictionary);
};
struct Writable {
  [[nodiscard]] std::optional<JSONDictionary> toJSONDictionary() const;
};
struct Both : Writable {
  static std::optional<Both> fromJSONDictionary(const JSONDictionary& dictionary);
};

TEST(Codable, IsBothDecodableAndEncodable) {
  EXPECT_TRUE(Decodable<Readable> && !Encodable<Readable> && !Codable<Readable>);
  EXPECT_TRUE(Encodable<Writable> && !Decodable<Writable> && !Codable<Writable>);
  EXPECT_TRUE(Decodable<Both> && Encodable<Both> && Codable<Both>);
}

}  // namespace
}  // namespace seldial
