// End-to-end tests on Wayland: the real program, a real compositor, the user's keyboard, windows of
// other programs and a UC client's sockets.
#include <sys/socket.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <thread>

#include "tests/support/SeldialProcess.h"
#include "tests/support/TerminalProgram.h"
#include "tests/support/wayland/BareCompositor.h"
#include "tests/support/wayland/Editor.h"
#include "tests/support/wayland/Sway.h"
#include "tests/support/wayland/UserKeyboard.h"

namespace seldial::tests {
namespace {

constexpr const char* kNumber = "+31 20 123 4567";

std::string setHotKey(int virtualKey, int delay) {
  return R"({"command":"SetHotKey","modifierCtrl":true,"modifierAlt":true,"virtualkey":)" +
         std::to_string(virtualKey) + R"(,"readdelay":)" + std::to_string(delay) + "}";
}

/// The members of a message may be in either order.
MATCHER(IsMakeCallOfTheNumber, "") {
  const std::string& message = arg.value_or("nothing");
  *result_listener << message;
  return message.find(R"("command":"MakeCall")") != std::string::npos &&
         message.find(R"("number":")" + std::string(kNumber) + "\"") != std::string::npos;
}

MATCHER(IsHotkeyStateTrue, "") {
  const std::string& message = arg.value_or("nothing");
  *result_listener << message;
  return message.find(R"("response":"HotkeyState")") != std::string::npos &&
         message.find(R"("result":true)") != std::string::npos;
}

class WaylandDialing : public ProgramTest {
 protected:
  /// Time for a window to copy on a machine that is busy with other things, in milliseconds.
  static constexpr int kDelay = 1000;

  void SetUp() override { sway.enter(); }

  void TearDown() override {
    if (process && process->isRunning()) terminate();
    EXPECT_FALSE(client.hasConnection()) << "a message too many";
  }

  void use(unsigned key = KEY_D) { keyboard.use({KEY_LEFTCTRL, KEY_LEFTALT}, key); }

  void dial() {
    use();
    EXPECT_THAT(client.nextMessage(), IsMakeCallOfTheNumber());
  }

  /// Ends the program and expects that it wrote one line on standard error, with this text.
  void expectOneError(const std::string& text) {
    terminate();
    const std::string errors = process->errors();
    EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1) << errors;
    EXPECT_THAT(errors, testing::HasSubstr(text));
  }

  Sway sway;
  UserKeyboard keyboard{sway.display()};
};

TEST_F(WaylandDialing, TheSelectionIsDialledOnceAndNothingIsTyped) {
  startListening();
  const Editor editor(sway.display());
  EXPECT_THAT(answerTo(setHotKey(2, kDelay)), IsHotkeyStateTrue());
  dial();
  EXPECT_THAT(editor.keys(), testing::ElementsAre(EditorKey{KEY_INSERT, kEditorControl}));
}

TEST_F(WaylandDialing, AGtkEntryIsDialledUntilItIsDeselectedAndKeepsItsText) {
  startListening();
  EXPECT_THAT(answerTo(setHotKey(2, kDelay)), IsHotkeyStateTrue());
  ChildProcess zenity({"zenity", "--entry", "--entry-text", kNumber},
                      {"GDK_BACKEND=wayland", "GSK_RENDERER=cairo", "NO_AT_BRIDGE=1"},
                      "sudo apt-get install zenity");
  sway.waitForFocus("zenity");
  dial();
  keyboard.tap(KEY_END);
  EXPECT_THAT(answerTo(setHotKey(2, 100)), IsHotkeyStateTrue());
  use();
  EXPECT_TRUE(process->waitForLine("> no number found on pasteboard"));
  keyboard.tap(KEY_ENTER);
  EXPECT_EQ(zenity.readLine(), kNumber);
}

TEST_F(WaylandDialing, ATerminalsSelectionIsDialledAndNothingReachesTheProgramInside) {
  startListening();
  TerminalProgram inside;
  const ChildProcess foot({"foot", inside.command()[0], inside.command()[1]}, {},
                          "sudo apt-get install foot");
  EXPECT_EQ(inside.readLine(), "shown");
  sway.waitForFocus("foot");
  EXPECT_THAT(answerTo(setHotKey(2, 100)), IsHotkeyStateTrue());
  use();
  EXPECT_TRUE(process->waitForLine("> no number found on pasteboard"));
  // foot's search selects the text that it finds.
  keyboard.use({KEY_LEFTCTRL, KEY_LEFTSHIFT}, KEY_R);
  for (const auto key :
       std::vector<unsigned>{KEY_4, KEY_9, KEY_3, KEY_0, KEY_1, KEY_2, KEY_3, KEY_ENTER}) {
    keyboard.tap(key);
  }
  EXPECT_THAT(answerTo(setHotKey(2, kDelay)), IsHotkeyStateTrue());
  use();
  EXPECT_THAT(client.nextMessage(), testing::Optional(testing::HasSubstr(R"("number":"4930123")")));
  keyboard.tap(KEY_Q);
  EXPECT_EQ(inside.readLine(), "q");
}

TEST_F(WaylandDialing, AfterAKillTheNextStartTakesTheHotKeyOver) {
  startListening();
  const Editor editor(sway.display());
  EXPECT_THAT(answerTo(setHotKey(2, kDelay)), IsHotkeyStateTrue());
  process->signal(SIGKILL);
  EXPECT_EQ(process->wait(), 128 + SIGKILL);
  startListening();
  use();  // the key is free again, and reaches the window
  editor.waitForKey(KEY_D);
  EXPECT_THAT(answerTo(setHotKey(2, kDelay)), IsHotkeyStateTrue());
  dial();
}

TEST_F(WaylandDialing, LosingTheCompositorEndsTheProgramCleanlyWithStatus1) {
  startListening();
  EXPECT_THAT(answerTo(setHotKey(2, kDelay)), IsHotkeyStateTrue());
  sway.kill();
  EXPECT_EQ(process->wait(), 1);
  EXPECT_FALSE(Peer::connectedTo(in).connected());
}

TEST_F(WaylandDialing, WithoutHotKeysForProgramsAPressByTheClientIsAUse) {
  sway.enter(Sway::Ipc::kHidden);
  startListening();
  const Editor editor(sway.display());
  EXPECT_THAT(answerTo(setHotKey(2, kDelay)), IsHotkeyStateTrue());
  EXPECT_EQ(ChildProcess({SELDIAL_UC, "press"}).wait(), 0);
  EXPECT_THAT(client.nextMessage(), IsMakeCallOfTheNumber());
  expectOneError("bind a key to \"seldial-uc press\"");
  EXPECT_EQ(ChildProcess({SELDIAL_UC, "press"}, {}, {}, {Streams::Errors::kCaptured, {}}).wait(),
            1);
}

TEST_F(WaylandDialing, ACompositorThatOffersTooLittleIsOneLineOnStandardErrorAndRefusals) {
  const BareCompositor bare(directory.path("bare"));
  setenv("WAYLAND_DISPLAY", directory.path("bare").c_str(), 1);
  startListening();
  EXPECT_THAT(answerTo(setHotKey(2, kDelay)), IsHotkeyStateFalse("hotkey not set"));
  expectOneError("lacks a seat");
}

TEST_F(WaylandDialing, ACompositorThatHangsUpIsOneLineOnStandardErrorAndRefusals) {
  const Peer compositor = Peer::listeningAt(directory.path("deaf"));
  std::thread hangUp([&] { compositor.accepted().leave(); });
  setenv("WAYLAND_DISPLAY", directory.path("deaf").c_str(), 1);
  startListening();
  EXPECT_THAT(answerTo(setHotKey(2, kDelay)), IsHotkeyStateFalse("hotkey not set"));
  shutdown(compositor.fd, SHUT_RDWR);
  hangUp.join();
  expectOneError("does not answer");
}

TEST_F(WaylandDialing, ACompositorThatAcceptsNobodyIsOneLineOnStandardErrorAndRefusals) {
  const Peer compositor = Peer::listeningAt(directory.path("frozen"), 0);
  const Peer waiting = Peer::connectedTo(directory.path("frozen"));  // the backlog is now full
  setenv("WAYLAND_DISPLAY", directory.path("frozen").c_str(), 1);
  startListening();
  EXPECT_THAT(answerTo(setHotKey(2, kDelay)), IsHotkeyStateFalse("hotkey not set"));
  expectOneError("does not answer");
}

TEST_F(WaylandDialing, WithoutTheModuleThereIsOneLineOnStandardErrorAndRefusals) {
  const std::string program = directory.path("seldial");
  std::filesystem::copy(SELDIAL_PROGRAM, program);
  ChildProcess seldial({program, "-log", "dialerpipename=" + in, "clientpipename=" + out}, {}, {},
                       {Streams::Errors::kCaptured, {}});
  ASSERT_TRUE(seldial.waitForLine("listen ok"));
  EXPECT_THAT(answerTo(setHotKey(2, kDelay)), IsHotkeyStateFalse("hotkey not set"));
  seldial.signal(SIGTERM);
  EXPECT_EQ(seldial.wait(), 0);
  EXPECT_THAT(seldial.errors(), testing::HasSubstr("seldial-wayland.so cannot be loaded"));
}

TEST_F(WaylandDialing, AStaleNameOfACompositorIsNotAWaylandSession) {
  setenv("WAYLAND_DISPLAY", "wayland-9", 1);
  startListening();
  EXPECT_THAT(answerTo(setHotKey(2, kDelay)), IsHotkeyStateFalse("hotkey not set"));
  terminate();
  EXPECT_EQ(process->errors(), "");  // as without a desktop
}

}  // namespace
}  // namespace seldial::tests
