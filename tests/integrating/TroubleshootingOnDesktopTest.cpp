// The entries of docs/troubleshooting.md that need a desktop: each test reproduces a symptom and,
// if there is a remedy, applies it.
#include <optional>
#include <string>
#include <vector>

#include "tests/integrating/ProgramOnDesktop.h"
#include "tests/ucclient/RunningClient.h"

namespace seldial::tests {
namespace {

constexpr const char* kNothingFound = "no number found on pasteboard";

class TroubleshootingOnDesktop : public ProgramOnDesktop {
 protected:
  void SetUp() override { startListening(server.display()); }

  /// Sends a command that Seldial answers with an Error. False if the log until then has `part`.
  bool isSilentAbout(const std::string& part) {
    sendCommand(in, {"{}"});
    for (std::string line; line.find("command tag not found") == std::string::npos;) {
      line = process->readLine();
      if (line.find(part) != std::string::npos) return false;
    }
    EXPECT_THAT(client.nextMessage(), IsError("command tag not found"));
    return true;
  }

  static XClientSettings silent() {
    XClientSettings settings;
    settings.copies = false;
    return settings;
  }
};

TEST_F(TroubleshootingOnDesktop, OneCombinationIsRefusedOthersAreNot) {
  ASSERT_TRUE(otherProgram.grab(kKeyD, kControlAlt));
  EXPECT_THAT(answerTo(setHotKey(kVirtualKeyD)), IsHotkeyStateFalse("hotkey not set"));
  expectSet(setHotKey(kVirtualKeyF));
  otherProgram.ungrab(kKeyD, kControlAlt);
  expectSet(setHotKey(kVirtualKeyD));
}

TEST_F(TroubleshootingOnDesktop, AKeyIsRefusedWithAnyModifiers) {
  for (const int key : {kVirtualKeyOfMacsOnly, kVirtualKeyShift}) {
    EXPECT_THAT(answerTo(setHotKey(key)), IsHotkeyStateFalse("hotkey not set"));
    EXPECT_THAT(answerTo(R"({"command":"SetHotKey","modifierCommand":true,"virtualkey":)" +
                         std::to_string(key) + "}"),
                IsHotkeyStateFalse("hotkey not set"));
  }
}

TEST_F(TroubleshootingOnDesktop, CtrlInsertIsRefused) {
  EXPECT_THAT(answerTo(R"({"command":"SetHotKey","modifierCtrl":true,"virtualkey":)" +
                       std::to_string(kVirtualKeyInsert) + "}"),
              IsHotkeyStateFalse("hotkey not set"));
  expectSet(setHotKey(kVirtualKeyInsert));
}

TEST_F(TroubleshootingOnDesktop, EverythingIsRefusedAndStandardErrorSaysTheXServerLacks) {
  const XServer poor({"-extension", "XTEST"});
  startListening(poor.display());
  EXPECT_THAT(answerTo(setHotKey(kVirtualKeyD)), IsHotkeyStateFalse("hotkey not set"));
  terminate();
  EXPECT_THAT(process->errors(), testing::HasSubstr("the X server lacks XTEST"));
}

TEST_F(TroubleshootingOnDesktop, TheLogHasNoLineHotKeyPressed) {
  Terminal terminal(server.display());
  expectSet(setHotKey(kVirtualKeyD, 0));
  terminal.window.grabKeyboard(true);  // like an open menu
  press();
  terminal.window.waitForRelease(kKeyD);
  EXPECT_TRUE(isSilentAbout("hot key pressed"));
  terminal.window.grabKeyboard(false);
  press();
  expectCall();
}

TEST_F(TroubleshootingOnDesktop, ALaterSetHotKeyWasRefusedWhichLeavesNoHotKey) {
  const Terminal terminal(server.display());
  expectSet(setHotKey(kVirtualKeyD, 0));
  EXPECT_THAT(answerTo(setHotKey(kVirtualKeyShift)), IsHotkeyStateFalse("hotkey not set"));
  press();
  terminal.window.waitForRelease(kKeyD);
  EXPECT_TRUE(isSilentAbout("hot key pressed"));
  expectSet(setHotKey(kVirtualKeyD, 0));
  press();
  expectCall();
}

TEST_F(TroubleshootingOnDesktop, TheKeysAreStillHeldTheHotKeyActsWhenItIsReleased) {
  const Terminal terminal(server.display());
  expectSet(setHotKey(kVirtualKeyD, 0));
  keyboard.press({kKeyLeftControl, kKeyLeftAlt, kKeyD});
  EXPECT_TRUE(isSilentAbout("hot key pressed"));
  keyboard.release({kKeyD, kKeyLeftAlt, kKeyLeftControl});
  expectCall();
}

TEST_F(TroubleshootingOnDesktop, TheLogHasHotKeyPressedThenNoNumberFound) {
  const XClient editor(server.display(), silent());
  expectSet(setHotKey(kVirtualKeyD, 0));
  press();
  EXPECT_TRUE(process->waitForLine("hot key pressed"));
  EXPECT_TRUE(process->waitForLine(kNothingFound));
}

TEST_F(TroubleshootingOnDesktop, TheLogHasConnectFailedAfterAMakeCall) {
  const Terminal terminal(server.display());
  out = directory.path("later");
  startListening(server.display());
  sendCommand(in, {setHotKey(kVirtualKeyD, 0)});
  ASSERT_TRUE(process->waitForLine("\"result\":true"));
  press();
  EXPECT_TRUE(process->waitForLine("MakeCall"));
  EXPECT_TRUE(process->waitForLine("connect failed"));
  const UcListener listening(out);
  press();
  EXPECT_THAT(listening.nextMessage().value_or("nothing"), testing::HasSubstr("MakeCall"));
}

TEST_F(TroubleshootingOnDesktop, NoNumberIsFoundInAnyProgram) {
  expectSet(setHotKey(kVirtualKeyD, 0));
  for (const char* const program : {"one", "two"}) {
    XClientSettings settings = silent();  // without a selection, there is nothing to copy
    settings.wmClass = program;
    const XClient editor(server.display(), settings);
    press();
    EXPECT_TRUE(process->waitForLine(kNothingFound));
  }
}

TEST_F(TroubleshootingOnDesktop, NoNumberIsFoundAnywhereNotEvenInTheWindowOfSeldialUcCheck) {
  const XClient editor(server.display());
  expectSet(setHotKey(kVirtualKeyD));
  keyboard.remap(kKeyInsert, 0);
  press();
  EXPECT_TRUE(process->waitForLine(kNothingFound));
}

TEST_F(TroubleshootingOnDesktop, NoNumberIsFoundInOneProgram) {
  expectSet(setHotKey(kVirtualKeyD, 0));
  const XClient deaf(server.display(), silent());
  press();
  EXPECT_TRUE(process->waitForLine(kNothingFound));
  const Terminal terminal(server.display());
  press();
  expectCall();
}

TEST_F(TroubleshootingOnDesktop, NoNumberIsFoundInASlowProgramSometimes) {
  XClient slow(server.display(), silent());
  expectSet(setHotKey(kVirtualKeyD, 0));
  press();
  EXPECT_TRUE(process->waitForLine(kNothingFound));
  slow.own("CLIPBOARD", answersWith("too late"));
  EXPECT_TRUE(isSilentAbout("MakeCall"));
}

TEST_F(TroubleshootingOnDesktop, NoNumberIsFoundInATerminal) {
  Terminal terminal(server.display());
  const auto select = [&terminal] {
    terminal.window.own("PRIMARY", answersWith("+31 20 123 4567"));
  };
  expectSet(setHotKey(kVirtualKeyD, 0));
  press();
  expectCall();  // from now on, Seldial watches selections and clicks
  select();
  press();
  expectCall();
  keyboard.click(10, 10);
  press();
  EXPECT_TRUE(process->waitForLine(kNothingFound));
  select();
  press();
  expectCall();
}

TEST_F(TroubleshootingOnDesktop, ItEndsWithStatus1AndTheConnectionToTheXServerIsLost) {
  server.kill();
  EXPECT_EQ(process->wait(), 1);
  EXPECT_THAT(process->errors(), testing::HasSubstr("the connection to the X server is lost"));
}

/// seldial-uc, and a terminal in which a national number is selected.
class TroubleshootingTheClient : public testing::Test {
 protected:
  RunningClient& start(std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"--delay", "0"});
    client_.emplace(arguments, server_.environment());
    client_->expectLine(R"({"response":"HotkeyState","result":true})");
    (void)client_->process().readLine();  // the same for people
    return *client_;
  }

  void use() {
    Keyboard keyboard(server_.display());
    keyboard.press({kKeyLeftControl, kKeyLeftAlt, kKeyD});
    keyboard.release({kKeyD, kKeyLeftAlt, kKeyLeftControl});
  }

 private:
  XServer server_;
  Terminal terminal_{server_.display(), "020 123 4567"};
  std::optional<RunningClient> client_;
};

TEST_F(TroubleshootingTheClient, SeldialUcPrintsTheNumberAndDoesNothingElse) {
  RunningClient& client = start({});
  use();
  client.expectLine(R"({"command":"MakeCall","number":"020 123 4567"})");
  client.expectLine("Dial: 020 123 4567");
}

TEST_F(TroubleshootingTheClient, CheckSaysWrongProgram) {
  RunningClient client({"check", "--seldial", "/nowhere/seldial"});
  EXPECT_TRUE(client.process().waitForLine("wrong program"));
}

TEST_F(TroubleshootingTheClient, ThereAreNoNotifications) {
  ChildProcess check({SELDIAL_UC, "check"},
                     {"DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR"});
  EXPECT_TRUE(check.waitForLine("wrong notifications"));
}

TEST_F(TroubleshootingTheClient, SeldialUcEndsWithStatus2) {
  RunningClient client({"--delay", "soon"});
  EXPECT_THAT(client.process().readLine(), testing::HasSubstr("--delay"));
  EXPECT_EQ(client.process().wait(), 2);
}

TEST_F(TroubleshootingTheClient, ANationalNumberIsNotFound) {
  RunningClient& client = start({"--dial", "true"});
  use();
  EXPECT_THAT(client.process().readLine(), testing::HasSubstr("no telephone number"));
}

TEST_F(TroubleshootingTheClient, SeldialUcSaysThatItCannotStartTheDialCommand) {
  RunningClient& client = start({"--dial", "no-such-program", "--region", "NL"});
  use();
  EXPECT_THAT(client.process().readLine(), testing::HasSubstr("cannot start no-such-program"));
}

}  // namespace
}  // namespace seldial::tests
