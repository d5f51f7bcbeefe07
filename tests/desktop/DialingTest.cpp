// End-to-end tests on a desktop: the real program, a real X server, the user's keyboard, another
// program's window and a UC client's sockets.
#include <algorithm>

#include "tests/platform/x11/ForeignGrabs.h"
#include "tests/support/SeldialProcess.h"
#include "tests/support/desktop/Keyboard.h"
#include "tests/support/desktop/Keys.h"
#include "tests/support/desktop/XClient.h"
#include "tests/support/desktop/XServer.h"

namespace seldial::tests {
namespace {

const std::vector<std::uint8_t> kControlAlt{kKeyLeftControl, kKeyLeftAlt};
constexpr const char* kNumber = "+31 20 123 4567";

std::string setHotKey(int virtualKey, int delay = 300) {
  return R"({"command":"SetHotKey","modifierCtrl":true,"modifierAlt":true,"virtualkey":)" +
         std::to_string(virtualKey) + R"(,"readdelay":)" + std::to_string(delay) + "}";
}

/// The keys of a message may be in either order.
MATCHER_P(IsMakeCall, number, "") {
  const std::string& message = arg.value_or("nothing");
  *result_listener << message;
  const std::string text = R"("number":")" + std::string(number) + "\"";
  return message == R"({"command":"MakeCall",)" + text + "}" ||
         message == "{" + text + R"(,"command":"MakeCall"})";
}

MATCHER(IsHotkeyStateTrue, "") {
  const std::string& message = arg.value_or("nothing");
  *result_listener << message;
  return message == R"({"response":"HotkeyState","result":true})" ||
         message == R"({"result":true,"response":"HotkeyState"})";
}

class Dialing : public ProgramTest {
 protected:
  void SetUp() override { startListening(server.display()); }

  void TearDown() override {
    EXPECT_EQ(keyboard.down(), std::set<std::uint8_t>{});
    if (process->isRunning()) terminate();
    EXPECT_FALSE(client.hasConnection()) << "a message too many";
  }

  void use(std::uint8_t key = kKeyD) {
    keyboard.press(kControlAlt);
    keyboard.tap(key);
    keyboard.release(kControlAlt);
  }

  XServer server;
  Keyboard keyboard{server.display()};
};

TEST_F(Dialing, TheSelectionIsDialledOnceAndNothingIsTyped) {
  const XClient editor(server.display());
  EXPECT_THAT(answerTo(setHotKey(2)), IsHotkeyStateTrue());
  use();
  EXPECT_THAT(client.nextMessage(), IsMakeCall(kNumber));
  for (const auto& key : editor.keys()) EXPECT_NE(key.key, kKeyD);
}

TEST_F(Dialing, ASuccessfulPressLogsExactlyOneAdditionalLine) {
  const XClient editor(server.display());
  EXPECT_THAT(answerTo(setHotKey(2)), IsHotkeyStateTrue());
  ASSERT_TRUE(process->waitForLine("Now closing unix socket client."));
  use();
  EXPECT_THAT(process->readLine(), testing::EndsWith("> hot key pressed (pasteboard)"));
  EXPECT_THAT(std::optional(process->readLine()), IsMakeCall(kNumber));
  EXPECT_THAT(client.nextMessage(), IsMakeCall(kNumber));
}

TEST_F(Dialing, WithNothingSelectedAnOldClipboardTextIsNotDialled) {
  XClientSettings nothingSelected;
  nothingSelected.copies = false;
  XClient editor(server.display(), nothingSelected);
  editor.own("CLIPBOARD", answersWith("an old number"));
  EXPECT_THAT(answerTo(setHotKey(2)), IsHotkeyStateTrue());
  use();
  EXPECT_TRUE(process->waitForLine("> no number found on pasteboard"));
}

TEST_F(Dialing, TextsArriveUnaltered) {
  EXPECT_THAT(answerTo(setHotKey(2)), IsHotkeyStateTrue());
  const std::pair<const char*, const char*> cases[] = {
      {"020 123\n4567\n", R"(020 123\n4567\n)"}, {"☎ \"1\"/2", R"(☎ \"1\"\/2)"}, {"", ""}};
  for (const auto& [text, written] : cases) {
    XClientSettings selected;
    selected.copy = answersWith(text);
    const XClient editor(server.display(), selected);
    use();
    EXPECT_THAT(client.nextMessage(), IsMakeCall(written));
  }
}

TEST_F(Dialing, ALongSelectionArrivesWhole) {
  const std::string text(3UL << 20, '7');
  XClientSettings selected;
  selected.copy = answersWith(text, 65536);
  const XClient editor(server.display(), selected);
  EXPECT_THAT(answerTo(setHotKey(2)), IsHotkeyStateTrue());
  use();
  EXPECT_THAT(client.nextMessage(), IsMakeCall(text));
}

TEST_F(Dialing, ANewHotKeyReplacesTheOldOne) {
  const XClient editor(server.display());
  EXPECT_THAT(answerTo(setHotKey(2)), IsHotkeyStateTrue());
  EXPECT_THAT(answerTo(setHotKey(3)), IsHotkeyStateTrue());
  use(kKeyD);
  editor.waitForRelease(kKeyD);
  use(kKeyF);
  EXPECT_THAT(client.nextMessage(), IsMakeCall(kNumber));
}

TEST_F(Dialing, TheSameHotKeySentAgainIsOneHotKey) {
  const XClient editor(server.display());
  for (int i = 0; i < 3; ++i) EXPECT_THAT(answerTo(setHotKey(2)), IsHotkeyStateTrue());
  use();
  EXPECT_THAT(client.nextMessage(), IsMakeCall(kNumber));
  EXPECT_THAT(answerTo(R"({"command":"SetHotKey"})"),
              IsHotkeyStateFalse("invalid virtual key value"));
}

TEST_F(Dialing, ARejectedCommandLeavesNoHotKey) {
  const XClient editor(server.display());
  EXPECT_THAT(answerTo(setHotKey(2)), IsHotkeyStateTrue());
  EXPECT_THAT(answerTo(R"({"command":"SetHotKey"})"),
              IsHotkeyStateFalse("invalid virtual key value"));
  use();
  editor.waitForRelease(kKeyD);
}

TEST_F(Dialing, ACombinationOfAnotherProgramIsRefused) {
  const UcListener otherClient(directory.path("other-out"));
  SeldialProcess other({"-log", "dialerpipename=" + directory.path("other-in"),
                        "clientpipename=" + directory.path("other-out")},
                       server.display());
  ASSERT_TRUE(other.waitForLine("listen ok"));
  sendCommand(directory.path("other-in"), {setHotKey(2)});
  EXPECT_THAT(otherClient.nextMessage(), IsHotkeyStateTrue());
  EXPECT_THAT(answerTo(setHotKey(2)), IsHotkeyStateFalse("hotkey not set"));
  EXPECT_THAT(answerTo(setHotKey(3)), IsHotkeyStateTrue());
}

TEST_F(Dialing, ACodeWithoutAKeyIsRefused) {
  for (const int code : {52, 66, 127, 200, 65534}) {
    EXPECT_THAT(answerTo(setHotKey(code)), IsHotkeyStateFalse("hotkey not set")) << code;
  }
}

TEST_F(Dialing, PressesDuringTheWaitAreEachHandledAfterwards) {
  const XClient editor(server.display());
  EXPECT_THAT(answerTo(setHotKey(2, 500)), IsHotkeyStateTrue());
  for (int i = 0; i < 3; ++i) use();
  for (int i = 0; i < 3; ++i) EXPECT_THAT(client.nextMessage(), IsMakeCall(kNumber));
}

TEST_F(Dialing, ACommandDuringTheWaitIsAnsweredAfterTheCall) {
  const XClient editor(server.display());
  EXPECT_THAT(answerTo(setHotKey(2, 1000)), IsHotkeyStateTrue());
  use();
  ASSERT_TRUE(process->waitForLine("> hot key pressed (pasteboard)"));
  sendCommand(in, {"{}"});
  EXPECT_THAT(client.nextMessage(), IsMakeCall(kNumber));
  EXPECT_THAT(client.nextMessage(), IsError("command tag not found"));
}

TEST_F(Dialing, LosingTheServerEndsTheProgramCleanlyWithStatus1) {
  XServer own;
  const std::string path = directory.path("own-in");
  SeldialProcess seldial({"-log", "dialerpipename=" + path, "clientpipename=" + out},
                         own.display());
  ASSERT_TRUE(seldial.waitForLine("listen ok"));
  sendCommand(path, {setHotKey(2)});
  EXPECT_THAT(client.nextMessage(), IsHotkeyStateTrue());
  own.kill();
  EXPECT_EQ(seldial.wait(), 1);
  EXPECT_FALSE(Peer::connectedTo(path).connected());
}

TEST_F(Dialing, AServerWithoutAnExtensionIsOneLineOnStandardErrorAndRefusals) {
  const XServer bare({"-extension", "XTEST"});
  SeldialProcess seldial(
      {"-log", "dialerpipename=" + directory.path("bare-in"), "clientpipename=" + out},
      bare.display());
  ASSERT_TRUE(seldial.waitForLine("listen ok"));
  sendCommand(directory.path("bare-in"), {setHotKey(2)});
  EXPECT_THAT(client.nextMessage(), IsHotkeyStateFalse("hotkey not set"));
  seldial.signal(SIGTERM);
  EXPECT_EQ(seldial.wait(), 0);
  const std::string errors = seldial.errors();
  EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1) << errors;
}

TEST_F(Dialing, ARefusedHotKeyIsFreeForOthersOnceTheAnswerHasArrived) {
  platform::x11::ForeignGrabs holder(server.display());
  platform::x11::ForeignGrabs third(server.display());
  ASSERT_TRUE(holder.grab(kKeyD, kStateControl | kStateAlt));
  for (int i = 0; i < 50; ++i) {
    ASSERT_THAT(answerTo(setHotKey(2)), IsHotkeyStateFalse("hotkey not set"));
    ASSERT_TRUE(third.grab(kKeyD, kStateControl | kStateAlt | kStateLock)) << i;
    third.ungrab(kKeyD, kStateControl | kStateAlt | kStateLock);
  }
}

}  // namespace
}  // namespace seldial::tests
