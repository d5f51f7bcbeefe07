// Termination of the program, and its waits, on an X server that does not answer or while the user
// holds keys.
#include <csignal>
#include <filesystem>

#include "tests/support/SeldialProcess.h"
#include "tests/support/desktop/Keyboard.h"
#include "tests/support/desktop/Keys.h"
#include "tests/support/desktop/XClient.h"
#include "tests/support/desktop/XServer.h"

namespace seldial::tests {
namespace {

using testing::HasSubstr;

const std::vector<std::uint8_t> kControlAlt{kKeyLeftControl, kKeyLeftAlt};
constexpr int kLongestDelay = 65535;

class EndOnDesktop : public ProgramTest {
 protected:
  void SetUp() override { startListening(server.display()); }

  void TearDown() override {
    EXPECT_EQ(process->wait(), 0);
    EXPECT_EQ(process->errors(), "");
    EXPECT_FALSE(std::filesystem::exists(in));
  }

  static std::string setHotKey(int delay = 0) {
    return R"({"command":"SetHotKey","modifierCtrl":true,"modifierAlt":true,"virtualkey":2,)"
           R"("readdelay":)" +
           std::to_string(delay) + "}";
  }

  void takeHotKey(int delay = 0) {
    ASSERT_THAT(answerTo(setHotKey(delay)).value_or(""), HasSubstr("\"result\":true"));
  }

  /// Uses the hot key, and keeps holding its modifiers until the program presses them again.
  void useAndHold() {
    keyboard.press(kControlAlt);
    keyboard.tap(kKeyD);
    ASSERT_TRUE(process->waitForLine("> hot key pressed (pasteboard)"));
    keyboard.waitForTypedDown({kKeyLeftControl, kKeyLeftAlt});
  }

  void expectKeysReleased() {
    EXPECT_EQ(process->wait(), 0);
    EXPECT_EQ(keyboard.typedDown(), std::set<std::uint8_t>{});
    keyboard.release(kControlAlt);
    EXPECT_EQ(keyboard.down(), std::set<std::uint8_t>{});
  }

  XServer server;
  Keyboard keyboard{server.display()};
};

TEST_F(EndOnDesktop, AFrozenServerDoesNotStopTheEnd) {
  takeHotKey();
  server.freeze();
  process->signal(SIGTERM);
}

TEST_F(EndOnDesktop, AFrozenServerForWhichACommandWaitsDoesNotStopTheEnd) {
  takeHotKey();
  server.freeze();
  sendCommand(in, {setHotKey()});
  process->signal(SIGTERM);
}

TEST_F(EndOnDesktop, AFrozenServerOnWhichKeysAreReleasedDoesNotStopTheEnd) {
  const XClient editor(server.display());
  takeHotKey();
  useAndHold();
  server.freeze();
  process->signal(SIGTERM);
  EXPECT_EQ(process->wait(), 0);
  server.thaw();
}

TEST_F(EndOnDesktop, CommandsWaitForAFrozenServerAndAreAnsweredInOrder) {
  server.freeze();
  for (int i = 0; i < 3; ++i) {
    sendCommand(in, {setHotKey(i)});
    sendCommand(in, {R"({"command":")" + std::to_string(i) + "\"}"});
  }
  ASSERT_TRUE(process->waitForLine("process set hotkey"));
  EXPECT_FALSE(client.hasConnection());
  server.thaw();
  for (int i = 0; i < 3; ++i) {
    EXPECT_THAT(client.nextMessage().value_or(""), HasSubstr("\"result\":true"));
    EXPECT_THAT(client.nextMessage(), IsError("invalid command: " + std::to_string(i)));
  }
  process->signal(SIGTERM);
}

TEST_F(EndOnDesktop, HeldModifiersAreReleasedDuringTheWaitForACopy) {
  const XClient editor(server.display());
  takeHotKey(kLongestDelay);
  useAndHold();
  process->signal(SIGTERM);
  expectKeysReleased();
}

TEST_F(EndOnDesktop, HeldModifiersAreReleasedWhileACallIsNotRead) {
  XClientSettings large;
  large.copy = answersWith(std::string(4UL << 20, '7'), 65536);
  const XClient editor(server.display(), large);
  takeHotKey(1000);
  useAndHold();
  const Peer unread = client.accepted();
  process->signal(SIGTERM);
  expectKeysReleased();
}

TEST_F(EndOnDesktop, ASecondSignalStillReleasesHeldModifiers) {
  const XClient editor(server.display());
  takeHotKey(kLongestDelay);
  useAndHold();
  process->signal(SIGINT);
  process->signal(SIGTERM);
  expectKeysReleased();
}

}  // namespace
}  // namespace seldial::tests
