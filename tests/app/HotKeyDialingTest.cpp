#include "tests/app/AppTest.h"

namespace seldial {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

constexpr const char* kState = R"("response":"HotkeyState")";

class HotKeyDialing : public AppTest {
 protected:
  /// Processes a SetHotKey with these additional members and returns the answer line.
  std::string setHotKey(const std::string& members) {
    const tests::CapturedOutput answer;
    app->processInputString(R"({"command":"SetHotKey")" + members + "}");
    std::string state;
    for (const auto& line : answer.lines()) {
      if (line.find(kState) != std::string::npos) state = line;
    }
    return state;
  }

  static bool accepted(const std::string& answer) {
    return answer.find(R"("result":true)") != std::string::npos &&
           answer.find("failreason") == std::string::npos;
  }

  static std::string failReason(const std::string& answer) {
    EXPECT_NE(answer.find(R"("result":false)"), std::string::npos) << answer;
    return jsonText(answer, "failreason");
  }

  /// Acts as the focused application: the copy keystroke puts `text` on the clipboard.
  void selection(const std::optional<std::string>& text) {
    clipboard->onCopy = [this, text] { clipboard->contents = text; };
  }

  void press() { hotKeys->release(hotKeys->registrations.at(0).hotKeyID.id); }
};

TEST_F(HotKeyDialing, WithoutAVirtualKeyTheAnswerIsFalseAndThePreviousHotKeyNoLongerFires) {
  EXPECT_TRUE(accepted(setHotKey(R"(,"virtualkey":2)")));
  const auto id = hotKeys->registrations.at(0).hotKeyID.id;
  EXPECT_EQ(failReason(setHotKey("")), "invalid virtual key value");
  EXPECT_TRUE(hotKeys->registrations.empty());
  EXPECT_EQ(app->CurrentHotKey, nullptr);
  hotKeys->release(id);
  EXPECT_TRUE(journal.empty());
}

TEST_F(HotKeyDialing, VirtualKey65535IsTheSameAsNone) {
  EXPECT_EQ(failReason(setHotKey(R"(,"virtualkey":65535)")), "invalid virtual key value");
  EXPECT_EQ(hotKeys->requests, 0);
}

TEST_F(HotKeyDialing, WithoutModifiersTheBareKeyIsRegisteredWithFlags0) {
  EXPECT_TRUE(accepted(setHotKey(R"(,"virtualkey":19)")));
  ASSERT_NE(app->CurrentHotKey, nullptr);
  EXPECT_EQ(app->CurrentHotKey->keyCode(), 19);
  EXPECT_EQ(app->CurrentHotKey->modifierFlags(), 0U);
  EXPECT_EQ(hotKeys->registrations.at(0).modifiers, 0U);
}

TEST_F(HotKeyDialing, EachModifierAddsItsFlag) {
  const std::pair<const char*, std::uint64_t> cases[] = {{"modifierShift", 0x20000},
                                                         {"modifierCtrl", 0x40000},
                                                         {"modifierAlt", 0x80000},
                                                         {"modifierCommand", 0x100000}};
  for (const auto& [key, flag] : cases) {
    EXPECT_TRUE(accepted(setHotKey(R"(,"virtualkey":2,")" + std::string(key) + "\":true")));
    EXPECT_EQ(app->CurrentHotKey->modifierFlags(), flag) << key;
  }
  EXPECT_TRUE(accepted(setHotKey(
      R"(,"virtualkey":2,"modifierShift":1,"modifierCtrl":1,"modifierAlt":1,"modifierCommand":1)")));
  EXPECT_EQ(app->CurrentHotKey->modifierFlags(), 0x1E0000U);
}

TEST_F(HotKeyDialing, AReadDelayOfZeroIsStoredAndLogged) {
  app->FlagLog = true;
  app->processInputString(R"({"command":"SetHotKey","virtualkey":2,"readdelay":0})");
  EXPECT_EQ(app->ReadPasteboardDelay, 0);
  EXPECT_THAT(lines(), testing::Contains("Log> ReadPasteBoardDelay: 0"));
}

TEST_F(HotKeyDialing, TheDelayIsUsedUnaltered) {
  EXPECT_TRUE(accepted(setHotKey(R"(,"virtualkey":2,"readdelay":65535)")));
  EXPECT_EQ(app->ReadPasteboardDelay, 65535);
  EXPECT_TRUE(accepted(setHotKey(R"(,"virtualkey":2)")));
  EXPECT_EQ(app->ReadPasteboardDelay, 500);
}

TEST_F(HotKeyDialing, TwoCommandsInARowUnregisterTheFirstBeforeTheSecondIsRegistered) {
  app->processInputString(R"({"command":"SetHotKey","virtualkey":2})");
  app->FlagLog = true;
  app->processInputString(R"({"command":"SetHotKey","virtualkey":3,"readdelay":7})");
  const auto printed = lines();
  ASSERT_THAT(printed, SizeIs(5));
  EXPECT_EQ(printed[1], "Log> process set hotkey");
  EXPECT_EQ(printed[2], "Log> unregister current hotkey");
  EXPECT_EQ(printed[3], "Log> ReadPasteBoardDelay: 7");
  EXPECT_TRUE(accepted(printed[4]));
  EXPECT_THAT(hotKeys->registrations, SizeIs(1));
  EXPECT_EQ(hotKeys->registrations[0].keyCode, 3U);
}

TEST_F(HotKeyDialing, TheSameCombinationCanBeSetAgain) {
  EXPECT_TRUE(accepted(setHotKey(R"(,"virtualkey":2)")));
  EXPECT_TRUE(accepted(setHotKey(R"(,"virtualkey":2)")));
}

TEST_F(HotKeyDialing, TheFirstCommandAfterStartUnregistersNothing) {
  app->FlagLog = true;
  app->processInputString(R"({"command":"SetHotKey","virtualkey":2})");
  EXPECT_THAT(lines(), testing::Not(testing::Contains("Log> unregister current hotkey")));
  EXPECT_TRUE(hotKeys->unregistered.empty());
}

TEST_F(HotKeyDialing, ARefusedRegistrationAnswersNotSetAndKeepsTheDelay) {
  EXPECT_TRUE(accepted(setHotKey(R"(,"virtualkey":2,"readdelay":9)")));
  hotKeys->refuse = true;
  EXPECT_EQ(failReason(setHotKey(R"(,"virtualkey":3,"readdelay":10)")), "hotkey not set");
  EXPECT_EQ(app->ReadPasteboardDelay, 9);
  EXPECT_EQ(app->CurrentHotKey, nullptr);
  EXPECT_TRUE(hotKeys->registrations.empty());
}

TEST_F(HotKeyDialing, TheSuccessAnswerHasNoFailReason) {
  const auto answer = setHotKey(R"(,"virtualkey":2)");
  EXPECT_TRUE(answer == R"({"response":"HotkeyState","result":true})" ||
              answer == R"({"result":true,"response":"HotkeyState"})")
      << answer;
}

TEST_F(HotKeyDialing, WithoutACentreTheAnswerSaysSoAndTheOldRecordStays) {
  EXPECT_TRUE(accepted(setHotKey(R"(,"virtualkey":2)")));
  const auto before = app->CurrentHotKey;
  QKHotKeyCenter::setHotKeyEvents(nullptr);
  app->FlagLog = true;
  app->processInputString(R"({"command":"SetHotKey","virtualkey":3})");
  EXPECT_THAT(lines(), testing::Contains("Log> internal error; hotkey center"));
  EXPECT_EQ(failReason(output.lines().back()), "internal error; hotkey center");
  EXPECT_EQ(app->CurrentHotKey, before);
  QKHotKeyCenter::setHotKeyEvents(hotKeys);
}

TEST_F(HotKeyDialing, APressTakesItsStepsInOrder) {
  setHotKey(R"(,"virtualkey":2,"readdelay":120)");
  selection("+31 20 123 4567");
  press();
  EXPECT_THAT(journal, ElementsAre("clear", "copySelection", "usleep 120000", "text"));
}

TEST_F(HotKeyDialing, ASuccessfulPressLogsOneLineAndPrintsTheMakeCall) {
  setHotKey(R"(,"virtualkey":2)");
  app->FlagLog = true;
  selection("123");
  press();
  const auto printed = lines();
  ASSERT_THAT(printed, SizeIs(2));
  EXPECT_EQ(printed[0], "Log> hot key pressed (pasteboard)");
  EXPECT_EQ(jsonText(printed[1], "command"), "MakeCall");
  EXPECT_EQ(jsonText(printed[1], "number"), "123");
}

TEST_F(HotKeyDialing, WithNothingSelectedAnOlderTextIsNotDialled) {
  setHotKey(R"(,"virtualkey":2)");
  clipboard->contents = "old number";
  app->FlagLog = true;
  press();
  EXPECT_THAT(lines(), ElementsAre("Log> hot key pressed (pasteboard)",
                                   "Log> no number found on pasteboard"));
}

TEST_F(HotKeyDialing, ASelectedImageWithoutTextEndsAsNoNumber) {
  setHotKey(R"(,"virtualkey":2)");
  selection(std::nullopt);
  app->FlagLog = true;
  press();
  EXPECT_EQ(lines().back(), "Log> no number found on pasteboard");
}

TEST_F(HotKeyDialing, TheSelectionIsSentUnaltered) {
  const std::pair<const char*, const char*> cases[] = {{" +31 20 123 4567 ", " +31 20 123 4567 "},
                                                       {"020-1234\n", "020-1234\\n"},
                                                       {"Example: \"1\"/2", R"(Example: \"1\"\/2)"},
                                                       {"", ""},
                                                       {"٠١٢ ☎", "٠١٢ ☎"}};
  setHotKey(R"(,"virtualkey":2)");
  for (const auto& [text, written] : cases) {
    const tests::CapturedOutput printed;
    selection(text);
    press();
    const std::string line = printed.text();
    EXPECT_NE(line.find("\"number\":\"" + std::string(written) + "\""), std::string::npos) << line;
  }
}

TEST_F(HotKeyDialing, WithADelayOf0TheReadFollowsTheKeystrokeAtOnce) {
  setHotKey(R"(,"virtualkey":2,"readdelay":0)");
  selection("1");
  press();
  EXPECT_THAT(application->sleeps, ElementsAre(0U));
}

TEST_F(HotKeyDialing, TheLongestDelayFitsItsArgument) {
  setHotKey(R"(,"virtualkey":2,"readdelay":65535)");
  press();
  EXPECT_THAT(application->sleeps, ElementsAre(65535000U));
}

TEST_F(HotKeyDialing, ATextThatIsNotUnicodeIsNotSent) {
  setHotKey(R"(,"virtualkey":2)");
  selection("\xff");
  app->FlagLog = true;
  press();
  EXPECT_EQ(lines().back(), "Log> error while serializing [makecall]");
}

TEST_F(HotKeyDialing, AnImpossibleCopyIsLoggedAndTheReadContinues) {
  setHotKey(R"(,"virtualkey":2)");
  clipboard->refuseCopy = true;
  app->FlagLog = true;
  press();
  EXPECT_THAT(lines(), testing::Contains("Log> internal error; copy selection to pastboard"));
  EXPECT_EQ(lines().back(), "Log> no number found on pasteboard");
  EXPECT_THAT(journal, ElementsAre("clear", "copySelection", "usleep 500000", "text"));
}

TEST_F(HotKeyDialing, ACopyThatIsPossibleLogsNothing) {
  app->FlagLog = true;
  app->copySelectionToPasteboard();
  EXPECT_THAT(lines(), testing::IsEmpty());
}

TEST_F(HotKeyDialing, WithAClientPathTheMakeCallIsDeliveredToo) {
  const tests::UcListener client(directory.path("out"));
  setHotKey(R"(,"virtualkey":2)");
  app->ValueClientPipeName = directory.path("out");
  selection("+31201234567");
  press();
  EXPECT_EQ(client.nextMessage(), output.lines().back());
}

TEST_F(HotKeyDialing, WithoutAClientPathTheMakeCallIsOnlyPrinted) {
  setHotKey(R"(,"virtualkey":2)");
  selection("5");
  const tests::CapturedOutput printed;
  app->FlagLog = true;
  press();
  EXPECT_THAT(printed.lines(), SizeIs(2));
}

TEST_F(HotKeyDialing, ALargeSelectionIsDialledWhole) {
  setHotKey(R"(,"virtualkey":2)");
  const std::string large(5 << 20, '7');
  selection(large);
  press();
  EXPECT_NE(output.text().find("\"" + large + "\""), std::string::npos);
}

}  // namespace
}  // namespace seldial
