// The statements of docs/integrating.md that need a desktop.
#include <csignal>
#include <filesystem>

#include "tests/integrating/ProgramOnDesktop.h"

namespace seldial::tests {
namespace {

class IntegratingOnDesktop : public ProgramOnDesktop {
 protected:
  void SetUp() override { startListening(server.display()); }
};

TEST_F(IntegratingOnDesktop, AMakeCallMayComeBeforeAnAnswer) {
  const Terminal terminal(server.display());
  expectSet(setHotKey(kVirtualKeyD, 500));
  press();
  ASSERT_TRUE(process->waitForLine("> hot key pressed (pasteboard)"));
  sendCommand(in, {"{}"});
  expectCall();
  EXPECT_THAT(client.nextMessage(), IsError("command tag not found"));
}

TEST_F(IntegratingOnDesktop, ANewHotKeyReplacesTheOldOne) {
  expectSet(setHotKey(kVirtualKeyD));
  expectSet(setHotKey(kVirtualKeyF));
  EXPECT_TRUE(otherProgram.isFree(kKeyD, kControlAlt));
  EXPECT_FALSE(otherProgram.isFree(kKeyF, kControlAlt));
}

TEST_F(IntegratingOnDesktop, ARefusedSetHotKeyLeavesNoHotKey) {
  expectSet(setHotKey(kVirtualKeyD));
  ASSERT_TRUE(otherProgram.grab(kKeyF, kControlAlt));
  EXPECT_THAT(answerTo(setHotKey(kVirtualKeyF)), IsHotkeyStateFalse("hotkey not set"));
  EXPECT_TRUE(otherProgram.isFree(kKeyD, kControlAlt));
}

TEST_F(IntegratingOnDesktop, SetHotKeyWithoutAKeyClearsTheHotKey) {
  expectSet(setHotKey(kVirtualKeyD));
  EXPECT_THAT(answerTo(R"({"command":"SetHotKey"})"),
              IsHotkeyStateFalse("invalid virtual key value"));
  EXPECT_TRUE(otherProgram.isFree(kKeyD, kControlAlt));
}

TEST_F(IntegratingOnDesktop, AnotherProgramHoldsTheCombination) {
  ASSERT_TRUE(otherProgram.grab(kKeyD, kControlAlt));
  EXPECT_THAT(answerTo(setHotKey(kVirtualKeyD)), IsHotkeyStateFalse("hotkey not set"));
}

TEST_F(IntegratingOnDesktop, TheKeyboardLacksTheKey) {
  EXPECT_THAT(answerTo(setHotKey(kVirtualKeyOfMacsOnly)), IsHotkeyStateFalse("hotkey not set"));
}

TEST_F(IntegratingOnDesktop, AModifierKeyAloneIsRefused) {
  EXPECT_THAT(answerTo(setHotKey(kVirtualKeyShift)), IsHotkeyStateFalse("hotkey not set"));
}

TEST_F(IntegratingOnDesktop, SeldialTypesCtrlInsertItself) {
  const std::string insert = R"(,"virtualkey":)" + std::to_string(kVirtualKeyInsert) + "}";
  EXPECT_THAT(answerTo(R"({"command":"SetHotKey","modifierCtrl":true)" + insert),
              IsHotkeyStateFalse("hotkey not set"));
  expectSet(R"({"command":"SetHotKey","modifierAlt":true)" + insert);
}

TEST_F(IntegratingOnDesktop, ACallInProgressIsFinishedFirst) {
  const XClient editor(server.display());
  const auto callIsFinished = [this] {
    expectSet(setHotKey(kVirtualKeyD, 200));
    press();
    EXPECT_TRUE(process->waitForLine("> hot key pressed (pasteboard)"));
    terminate();
    return client.hasConnection();
  };
  // On a busy machine, the call may take longer than the second that Seldial gives it.
  for (int attempts = 1; !callIsFinished(); ++attempts) {
    ASSERT_LT(attempts, 10);
    startListening(server.display());
  }
  expectCall();
}

TEST_F(IntegratingOnDesktop, SeldialEndsWithinTwoSeconds) {
  expectSet(setHotKey(kVirtualKeyD));
  server.freeze();
  sendCommand(in, {setHotKey(kVirtualKeyF)});
  terminate();
  EXPECT_FALSE(std::filesystem::exists(in));
}

TEST_F(IntegratingOnDesktop, Status1MeansThatTheXServerIsGone) {
  XServer own;
  SeldialProcess seldial({"-log", "dialerpipename=" + directory.path("own")}, own.display());
  ASSERT_TRUE(seldial.waitForLine("listen ok"));
  own.kill();
  EXPECT_EQ(seldial.wait(), 1);
}

TEST_F(IntegratingOnDesktop, ARestartedSeldialHasNoHotKey) {
  expectSet(setHotKey(kVirtualKeyD));
  process->signal(SIGKILL);
  process->wait();
  startListening(server.display());
  EXPECT_TRUE(eventually([this] { return otherProgram.isFree(kKeyD, kControlAlt); }));
  expectSet(setHotKey(kVirtualKeyD));
}

TEST_F(IntegratingOnDesktop, InstancesWithDifferentPathsDoNotAffectEachOther) {
  const UcListener otherClient(directory.path("other-out"));
  SeldialProcess other({"-log", "dialerpipename=" + directory.path("other-in"),
                        "clientpipename=" + directory.path("other-out")},
                       server.display());
  ASSERT_TRUE(other.waitForLine("listen ok"));
  expectSet(setHotKey(kVirtualKeyD));
  sendCommand(directory.path("other-in"), {setHotKey(kVirtualKeyD)});
  EXPECT_THAT(otherClient.nextMessage(), IsHotkeyStateFalse("hotkey not set"));
  sendCommand(directory.path("other-in"), {setHotKey(kVirtualKeyF)});
  EXPECT_THAT(otherClient.nextMessage().value_or("nothing"), testing::HasSubstr("true"));
}

TEST_F(IntegratingOnDesktop, TheFirstOneKeepsItsHotKey) {
  const Terminal terminal(server.display());
  expectSet(setHotKey(kVirtualKeyD));
  SeldialProcess second({"-log", "dialerpipename=" + in}, server.display());
  ASSERT_TRUE(second.waitForLine("listen ok"));
  press();
  expectCall();
}

}  // namespace
}  // namespace seldial::tests
