// The client with the real dialer on a private desktop.
#include <gtest/gtest.h>

#include <csignal>

#include "tests/support/desktop/Keyboard.h"
#include "tests/support/desktop/Keys.h"
#include "tests/support/desktop/XClient.h"
#include "tests/support/desktop/XServer.h"
#include "tests/ucclient/RunningClient.h"

namespace seldial {
namespace {

class SeldialUcOnDesktop : public testing::Test {
 protected:
  /// Returns once the hot key is set.
  void expectHotKey(RunningClient& client) {
    client.expectLine(R"({"response":"HotkeyState","result":true})");
    client.expectLine(
        "Hot key ctrl+alt+d is set: select a number in any application and press it.");
  }

  void pressHotKey() const {
    tests::Keyboard keyboard(server_.display());
    keyboard.press({tests::kKeyLeftControl, tests::kKeyLeftAlt, tests::kKeyD});
    keyboard.release({tests::kKeyD, tests::kKeyLeftAlt, tests::kKeyLeftControl});
  }

  tests::XServer server_;
};

TEST_F(SeldialUcOnDesktop, EachNumberIsShownAsItCameAndForPeople) {
  tests::XClientSettings settings;
  settings.copy = tests::answersWith("+31 20 123 4567\n");
  const tests::XClient editor(server_.display(), settings);
  RunningClient client({"--delay", "500"}, server_.environment());
  expectHotKey(client);
  for (int use = 0; use < 2; ++use) {
    pressHotKey();
    client.expectLine(R"({"command":"MakeCall","number":"+31 20 123 4567\n"})");
    client.expectLine(R"(Dial: +31 20 123 4567\u000a)");
  }
  client.process().signal(SIGTERM);
  EXPECT_EQ(client.process().wait(), 0);
  EXPECT_TRUE(client.directoryIsEmpty());
}

TEST_F(SeldialUcOnDesktop, AHotKeyThatIsTakenIsRefusedAndIsFreeAgainAfterwards) {
  RunningClient holder({}, server_.environment());
  expectHotKey(holder);
  RunningClient second({}, server_.environment());
  second.expectLine(R"({"failreason":"hotkey not set","response":"HotkeyState","result":false})");
  (void)second.process().readLine();
  EXPECT_EQ(second.process().wait(), 1);

  holder.process().signal(SIGINT);
  EXPECT_EQ(holder.process().wait(), 0);
  RunningClient third({}, server_.environment());
  expectHotKey(third);
}

TEST_F(SeldialUcOnDesktop, AReaderThatIsGoneEndsItWithStatus1) {
  const tests::XClient editor(server_.display());
  tests::ChildProcess shell(
      {"sh", "-c",
       R"(exec 3>&1; { "$0" --delay 20 2>/dev/null; echo "status $?" >&3; } |)"
       R"( { read -r line; echo "$line" >&3; })",
       SELDIAL_UC},
      {server_.environment()});
  EXPECT_EQ(shell.readLine(), R"({"response":"HotkeyState","result":true})");
  pressHotKey();  // its next output, at the latest, finds no reader
  EXPECT_EQ(shell.readLine(), "status 1");
}

TEST_F(SeldialUcOnDesktop, TheDialerThatLosesItsDesktopEndsTheClientWithStatus1) {
  RunningClient client({}, server_.environment());
  expectHotKey(client);
  server_.kill();
  std::string line = client.process().readLine();
  while (line.rfind("seldial-uc: ", 0) != 0) line = client.process().readLine();
  EXPECT_EQ(line, "seldial-uc: seldial ended with status 1");
  EXPECT_EQ(client.process().wait(), 1);
  EXPECT_TRUE(client.directoryIsEmpty());
}

}  // namespace
}  // namespace seldial
