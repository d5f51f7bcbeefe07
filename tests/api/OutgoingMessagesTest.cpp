#include <gtest/gtest.h>

#include "api/JSON.h"
#include "api/MessageRecords.h"
#include "api/Timestamps.h"
#include "tests/api/Fixtures.h"

namespace seldial {
namespace {

constexpr const char* kInvalid = "number \xFF";

/// The members of a message.
JSONDictionary members(const JSONString& message) {
  const std::string line = message.string();
  auto value = readJSON(line);
  EXPECT_TRUE(value && value->dictionary() != nullptr) << line;
  if (!value || value->dictionary() == nullptr) return {};
  return std::move(*value->dictionary());
}

std::string textOf(const JSONDictionary& dictionary, const char* key) {
  const auto member = dictionary.find(key);
  if (member == dictionary.end() || member->second.text() == nullptr) return "(no text)";
  return *member->second.text();
}

TEST(HotKeyStateApi, ASuccessHasNoSpacesAndNoFailReason) {
  const auto line = HotKeyStateApi{true, std::nullopt}.toJSONString();
  ASSERT_TRUE(line);
  EXPECT_TRUE(line->string() == R"({"response":"HotkeyState","result":true})" ||
              line->string() == R"({"result":true,"response":"HotkeyState"})")
      << line->string();
}

TEST(HotKeyStateApi, AnEmptyFailReasonIsWritten) {
  const auto line = HotKeyStateApi{false, ""}.toJSONString();
  ASSERT_TRUE(line);
  const auto dictionary = members(*line);
  EXPECT_EQ(dictionary.size(), 3U);
  EXPECT_EQ(textOf(dictionary, "failreason"), "");
  EXPECT_NE(line->string().find(R"("failreason":"")"), std::string::npos);
}

TEST(HotKeyStateApi, AFailureSaysWhy) {
  const auto line = HotKeyStateApi{false, "hotkey not set"}.toJSONString();
  ASSERT_TRUE(line);
  const auto dictionary = members(*line);
  EXPECT_EQ(textOf(dictionary, "response"), "HotkeyState");
  EXPECT_EQ(dictionary.at("result").boolean(), false);
  EXPECT_EQ(textOf(dictionary, "failreason"), "hotkey not set");
}

TEST(HotKeyStateApi, AFailReasonThatCannotBeWrittenGivesNothing) {
  EXPECT_FALSE((HotKeyStateApi{false, kInvalid}.toJSONString()));
}

TEST(MakeCallApi, CarriesTheNumberUnaltered) {
  const auto line = MakeCallApi{" +31 20/123\n"}.toJSONString();
  ASSERT_TRUE(line);
  const auto dictionary = members(*line);
  EXPECT_EQ(dictionary.size(), 2U);
  EXPECT_EQ(textOf(dictionary, "command"), "MakeCall");
  EXPECT_EQ(textOf(dictionary, "number"), " +31 20/123\n");
  EXPECT_NE(line->string().find(R"(" +31 20\/123\n")"), std::string::npos) << line->string();
}

TEST(MakeCallApi, WithoutANumberItIsWrittenAsTheEmptyText) {
  const auto line = MakeCallApi{}.toJSONString();
  ASSERT_TRUE(line);
  EXPECT_EQ(members(*line).size(), 2U);
  EXPECT_NE(line->string().find(R"("number":"")"), std::string::npos) << line->string();
}

TEST(MakeCallApi, ANumberThatCannotBeWrittenGivesNothing) {
  EXPECT_FALSE(MakeCallApi{kInvalid}.toJSONString());
}

TEST(ErrorApi, CarriesTheLocalTimeOneHourEastOfGMT) {
  const LocalTimeZone zone("CET-1");
  const auto line = ErrorApi{"command tag not found"}.toJSONString(kFebruary2017);
  EXPECT_NE(line.string().find(R"("datetime":"2017-02-06T14:10:32+0100")"), std::string::npos)
      << line.string();
  const auto dictionary = members(line);
  EXPECT_EQ(dictionary.size(), 3U);
  EXPECT_EQ(textOf(dictionary, "response"), "Error");
  EXPECT_EQ(textOf(dictionary, "message"), "command tag not found");
}

TEST(ErrorApi, IsStampedWithTheCurrentTime) {
  const LocalTimeZone zone("EST5");
  const std::string before = messageTimestamp();
  const std::string stamp = textOf(members(ErrorApi{"x"}.toJSONString()), "datetime");
  EXPECT_LE(before, stamp);
  EXPECT_LE(stamp, messageTimestamp());
}

TEST(ErrorApi, FallsBackToAFixedTextOfThatTime) {
  const LocalTimeZone zone("CET-1");
  const auto line = ErrorApi{kInvalid}.toJSONString(kFebruary2017);
  EXPECT_EQ(line.string(),
            "{\"datetime\":\"2017-02-06T14:10:32+0100"
            "\",\"response\":\"Error\",\"message\":\"cascading error while serializing\"}");
  EXPECT_EQ(line.string().size(), 13U + 24U + 67U);
}

TEST(ErrorApi, FallsBackWithTheCurrentTime) {
  const LocalTimeZone zone("EST5");
  const std::string before = messageTimestamp();
  const std::string stamp = textOf(members(ErrorApi{kInvalid}.toJSONString()), "datetime");
  EXPECT_LE(before, stamp);
  EXPECT_LE(stamp, messageTimestamp());
}

TEST(LogApi, IsAnEventWithItsTime) {
  const LocalTimeZone zone("CET-1");
  const auto line = LogApi{"one\ntwo"}.toJSONString(kFebruary2017);
  EXPECT_EQ(line.string().find('\n'), std::string::npos);
  const auto dictionary = members(line);
  EXPECT_EQ(dictionary.size(), 3U);
  EXPECT_EQ(textOf(dictionary, "event"), "Log");
  EXPECT_EQ(textOf(dictionary, "message"), "one\ntwo");
  EXPECT_EQ(textOf(dictionary, "datetime"), "2017-02-06T14:10:32+0100");
}

TEST(LogApi, FallsBackToAFixedTextOfThatTime) {
  const LocalTimeZone zone("CET-1");
  const auto line = LogApi{kInvalid}.toJSONString(kFebruary2017);
  EXPECT_EQ(line.string(),
            "{\"datetime\":\"2017-02-06T14:10:32+0100"
            "\",\"event\":\"Log\",\"message\":\"error while serializing [log]\"}");
  EXPECT_EQ(line.string().size(), 13U + 24U + 58U);
}

TEST(LogApi, IsStampedWithTheCurrentTime) {
  const LocalTimeZone zone("EST5");
  const std::string before = messageTimestamp();
  const std::string stamp = textOf(members(LogApi{"x"}.toJSONString()), "datetime");
  EXPECT_LE(before, stamp);
  EXPECT_LE(stamp, messageTimestamp());
}

TEST(ClickToDialSource, IsBuiltFromExactlyItsThreeTexts) {
  EXPECT_EQ(clickToDialSource("CommandLine"), ClickToDialSource::CommandLine);
  EXPECT_EQ(clickToDialSource("Pasteboard"), ClickToDialSource::Pasteboard);
  EXPECT_EQ(clickToDialSource("StdIO"), ClickToDialSource::StdIO);
  for (const auto* text : {"", "stdio", "PASTEBOARD", "CommandLine ", "Command"}) {
    EXPECT_EQ(clickToDialSource(text), std::nullopt) << text;
  }
}

TEST(ClickToDialSource, HasItsNameAsText) {
  EXPECT_STREQ(rawValue(ClickToDialSource::CommandLine), "CommandLine");
  EXPECT_STREQ(rawValue(ClickToDialSource::Pasteboard), "Pasteboard");
  EXPECT_STREQ(rawValue(ClickToDialSource::StdIO), "StdIO");
  EXPECT_LT(ClickToDialSource::CommandLine, ClickToDialSource::Pasteboard);
  EXPECT_LT(ClickToDialSource::Pasteboard, ClickToDialSource::StdIO);
}

TEST(ClickToDialApi, BeginsEmpty) {
  const ClickToDialApi record;
  EXPECT_EQ(record.Source, std::nullopt);
  EXPECT_EQ(record.Number, std::nullopt);
}

}  // namespace
}  // namespace seldial
