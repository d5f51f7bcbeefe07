#include <gtest/gtest.h>

#include "api/MessageRecords.h"
#include "client/Protocol.h"
#include "platform/VirtualKeys.h"

namespace seldial {
namespace {

TEST(Messages, TheCommandIsReadBackAsItWasMeant) {
  const HotKey hotKey{platform::kVK_ANSI_D,
                      platform::kModifierFlagOption | platform::kModifierFlagControl};
  const auto record = SetHotKeyApi::fromJSONString(setHotKeyCommand(hotKey, 65535));
  EXPECT_EQ(record.Command, "SetHotKey");
  EXPECT_TRUE(record.ModifierAlt);
  EXPECT_FALSE(record.ModifierCommand);
  EXPECT_TRUE(record.ModifierCtrl);
  EXPECT_FALSE(record.ModifierShift);
  EXPECT_EQ(record.VirtualKey, 2);
  EXPECT_EQ(record.ReadDelay, 65535);
}

TEST(Messages, TheOtherModifiersAreSentToo) {
  const HotKey hotKey{platform::kVK_ANSI_A,
                      platform::kModifierFlagCommand | platform::kModifierFlagShift};
  const auto record = SetHotKeyApi::fromJSONString(setHotKeyCommand(hotKey, 0));
  EXPECT_FALSE(record.ModifierAlt);
  EXPECT_TRUE(record.ModifierCommand);
  EXPECT_FALSE(record.ModifierCtrl);
  EXPECT_TRUE(record.ModifierShift);
  EXPECT_EQ(record.ReadDelay, 0);
}

TEST(Messages, ACallCarriesItsNumberUnaltered) {
  const Message message = messageFromJSON(R"({"number":" +31 20\n","command":"MakeCall"})");
  EXPECT_EQ(message.kind, Message::Kind::MakeCall);
  EXPECT_EQ(message.text, " +31 20\n");
}

TEST(Messages, AnswersToTheCommand) {
  EXPECT_EQ(messageFromJSON(R"({"response":"HotkeyState","result":true})").kind,
            Message::Kind::HotKeySet);
  const Message refused =
      messageFromJSON(R"({"failreason":"hotkey not set","response":"HotkeyState","result":false})");
  EXPECT_EQ(refused.kind, Message::Kind::HotKeyNotSet);
  EXPECT_EQ(refused.text, "hotkey not set");
  const Message error =
      messageFromJSON(R"({"response":"Error","message":"command tag not found"})");
  EXPECT_EQ(error.kind, Message::Kind::Error);
  EXPECT_EQ(error.text, "command tag not found");
}

TEST(Messages, AnythingElseIsUnknown) {
  for (const char* const text : {"", "hello", "[]", "{}", R"({"command":"SetHotKey"})",
                                 R"({"command":5})", R"({"response":"Welcome"})"}) {
    EXPECT_EQ(messageFromJSON(text).kind, Message::Kind::Unknown) << text;
  }
}

TEST(Messages, OnlyALogEventIsALoggedMessage) {
  EXPECT_EQ(loggedMessage(R"({"event":"Log","message":"a","datetime":"2017"})"), "a");
  EXPECT_FALSE(loggedMessage(R"({"response":"HotkeyState","result":true})"));
  EXPECT_FALSE(loggedMessage("  ___  "));
}

}  // namespace
}  // namespace seldial
