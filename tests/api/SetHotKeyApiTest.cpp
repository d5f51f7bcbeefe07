#include <gtest/gtest.h>

#include "api/MessageRecords.h"
#include "tests/api/Fixtures.h"

namespace seldial {
namespace {

void expectDefaults(const std::string& text) {
  const auto record = SetHotKeyApi::fromJSONString(text);
  EXPECT_EQ(record.Command, std::nullopt) << text;
  EXPECT_FALSE(record.ModifierAlt) << text;
  EXPECT_FALSE(record.ModifierCommand) << text;
  EXPECT_FALSE(record.ModifierCtrl) << text;
  EXPECT_FALSE(record.ModifierShift) << text;
  EXPECT_EQ(record.VirtualKey, 65535) << text;
  EXPECT_EQ(record.ReadDelay, 500) << text;
}

/// The record of a command with this member.
SetHotKeyApi with(const std::string& member) {
  return SetHotKeyApi::fromJSONString(R"({"command":"SetHotKey",)" + member + "}");
}

TEST(SetHotKeyApi, EveryFieldIsRead) {
  const auto record = SetHotKeyApi::fromJSONString(
      R"({"command":"SetHotKey","modifierAlt":false,"modifierCommand":true,"modifierCtrl":false,)"
      R"("modifierShift":true,"virtualkey":19,"readdelay":100})");
  EXPECT_EQ(record.Command, "SetHotKey");
  EXPECT_FALSE(record.ModifierAlt);
  EXPECT_TRUE(record.ModifierCommand);
  EXPECT_FALSE(record.ModifierCtrl);
  EXPECT_TRUE(record.ModifierShift);
  EXPECT_EQ(record.VirtualKey, 19);
  EXPECT_EQ(record.ReadDelay, 100);
}

TEST(SetHotKeyApi, TheOrderOfTheKeysAndUnknownKeysDoNotMatter) {
  const auto record = SetHotKeyApi::fromJSONString(
      R"({"readdelay":100,"x":{"virtualkey":3},"virtualkey":19,"modifierCtrl":true,)"
      R"("modifierAlt":true,"y":[1],"command":"SetHotKey"})");
  EXPECT_EQ(record.Command, "SetHotKey");
  EXPECT_TRUE(record.ModifierAlt);
  EXPECT_TRUE(record.ModifierCtrl);
  EXPECT_EQ(record.VirtualKey, 19);
  EXPECT_EQ(record.ReadDelay, 100);
}

TEST(SetHotKeyApi, TheCommandAloneTakesEveryDefault) {
  const auto record = SetHotKeyApi::fromJSONString(R"({"command":"SetHotKey"})");
  EXPECT_EQ(record.Command, "SetHotKey");
  EXPECT_FALSE(record.ModifierAlt || record.ModifierCommand || record.ModifierCtrl ||
               record.ModifierShift);
  EXPECT_EQ(record.VirtualKey, 65535);
  EXPECT_EQ(record.ReadDelay, 500);
}

TEST(SetHotKeyApi, AnUnusableVirtualKeyIs65535) {
  for (const auto* value : {"-1", "65536", "\"19\"", "19.5", "null", "true", "false", "[19]",
                            "{\"a\":19}", "9223372036854775808", "-9223372036854775808",
                            "4294967315", "18446744073709551635", "1e300", "1e-300"}) {
    EXPECT_EQ(with(R"("virtualkey":)" + std::string(value)).VirtualKey, 65535) << value;
  }
}

TEST(SetHotKeyApi, AVirtualKeyIsAnyExactIntegerOf16Bits) {
  EXPECT_EQ(with(R"("virtualkey":19.0)").VirtualKey, 19);
  EXPECT_EQ(with(R"("virtualkey":1.9e1)").VirtualKey, 19);
  EXPECT_EQ(with(R"("virtualkey":0)").VirtualKey, 0);
  EXPECT_EQ(with(R"("virtualkey":65534)").VirtualKey, 65534);
  EXPECT_EQ(with(R"("virtualkey":65535)").VirtualKey, 65535);
}

TEST(SetHotKeyApi, AReadDelayOfZeroIsAccepted) {
  EXPECT_EQ(with(R"("readdelay":0)").ReadDelay, 0);
  EXPECT_EQ(with(R"("readdelay":65535)").ReadDelay, 65535);
}

TEST(SetHotKeyApi, AnUnusableReadDelayIs500) {
  for (const auto* value : {"70000", "-5", "65536", "\"100\"", "0.5", "null", "true", "[]"}) {
    EXPECT_EQ(with(R"("readdelay":)" + std::string(value)).ReadDelay, 500) << value;
  }
}

TEST(SetHotKeyApi, AModifierIsABooleanOrTheNumber1Or0) {
  for (const auto* value : {"true", "1", "1.0", "1e0"}) {
    EXPECT_TRUE(with(R"("modifierAlt":)" + std::string(value)).ModifierAlt) << value;
  }
  for (const auto* value : {"false", "0", "\"true\"", "2", "-1", "1.5", "null", "{}", "[true]",
                            "1.00000000000000000000001"}) {
    EXPECT_FALSE(with(R"("modifierAlt":)" + std::string(value)).ModifierAlt) << value;
  }
}

TEST(SetHotKeyApi, EachModifierHasItsOwnKey) {
  EXPECT_TRUE(with(R"("modifierAlt":true)").ModifierAlt);
  EXPECT_TRUE(with(R"("modifierCommand":true)").ModifierCommand);
  EXPECT_TRUE(with(R"("modifierCtrl":true)").ModifierCtrl);
  EXPECT_TRUE(with(R"("modifierShift":true)").ModifierShift);
  const auto record =
      with(R"("modifieralt":true,"ModifierCommand":true,"modifierctrl":true,"VirtualKey":19)");
  EXPECT_FALSE(record.ModifierAlt || record.ModifierCommand || record.ModifierCtrl);
  EXPECT_EQ(record.VirtualKey, 65535);
}

TEST(SetHotKeyApi, ACapitalCIsNotTheKeyCommand) {
  EXPECT_EQ(SetHotKeyApi::fromJSONString(R"({"Command":"SetHotKey"})").Command, std::nullopt);
}

TEST(SetHotKeyApi, ACommandThatIsNotAStringIsIgnored) {
  for (const auto* value : {"123", "true", "null", "{}", "[\"SetHotKey\"]"}) {
    EXPECT_EQ(SetHotKeyApi::fromJSONString(R"({"command":)" + std::string(value) + "}").Command,
              std::nullopt)
        << value;
  }
  EXPECT_EQ(SetHotKeyApi::fromJSONString(R"({"command":""})").Command, "");
}

TEST(SetHotKeyApi, TheLastOfTwoEqualKeysCounts) {
  EXPECT_EQ(with(R"("virtualkey":1,"virtualkey":2)").VirtualKey, 2);
}

TEST(SetHotKeyApi, InputThatIsNotAJSONObjectGivesTheDefaultRecord) {
  for (const auto* text :
       {"42", "hello", "", " ", "\n", "\"SetHotKey\"", "null", "true", "{",
        R"({"command":"SetHotKey"}{"command":"SetHotKey"})",
        R"({"command":"SetHotKey","virtualkey":1e999})", "{\"command\":\"\xFF\"}", "[1,2"}) {
    expectDefaults(text);
  }
  expectDefaults(std::string("{\"command\":\"SetHotKey\"}\0", 24));
}

TEST(SetHotKeyApi, FiveMillionOpenBracketsGiveTheDefaultRecord) {
  expectDefaults(std::string(kFiveMillion, '['));
}

TEST(SetHotKeyApi, FiveMillionBalancedBracketsNextToTheCommandAreIgnored) {
  std::string text = nestedArrays(kFiveMillion);
  text.insert(1, R"("command":"SetHotKey","virtualkey":19,)");
  const auto record = SetHotKeyApi::fromJSONString(text);
  EXPECT_EQ(record.Command, "SetHotKey");
  EXPECT_EQ(record.VirtualKey, 19);
}

TEST(SetHotKeyApiDeathTest, AnArrayAtTheTopLevelStopsTheProgram) {
  EXPECT_EXIT((void)SetHotKeyApi::fromJSONString("[1,2]"), testing::KilledBySignal(SIGABRT),
              "^fatal error: a command must be a JSON object, not an array\n$");
  EXPECT_DEATH((void)SetHotKeyApi::fromJSONString("[]"), "JSON object");
}

}  // namespace
}  // namespace seldial
