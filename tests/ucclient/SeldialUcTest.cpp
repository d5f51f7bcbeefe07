// The client with the real dialer without a desktop: every hot key is refused.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>
#include <fstream>
#include <stdexcept>

#include "tests/ucclient/RunningClient.h"

namespace seldial {
namespace {

TEST(SeldialUc, ARefusedHotKeyEndsItWithStatus1AndTheReason) {
  RunningClient client({"--hotkey", "ctrl+alt+d"});
  client.expectLine(R"({"failreason":"hotkey not set","response":"HotkeyState","result":false})");
  client.expectLine(
      "seldial-uc: the hot key ctrl+alt+d was refused: hotkey not set (another program holds it, "
      "the keyboard has no such key, or there is no desktop)");
  EXPECT_EQ(client.process().wait(), 1);
  EXPECT_TRUE(client.directoryIsEmpty());
}

TEST(SeldialUc, TheConversationIsShownInBothDirections) {
  RunningClient client({"--conversation", "--delay", "20"});
  client.expectLine("dialer → connected");
  client.expectLine(R"(dialer → {"command":"SetHotKey","modifierAlt":true,"modifierCommand":false,)"
                    R"("modifierCtrl":true,"modifierShift":false,"readdelay":20,"virtualkey":2})");
  client.expectLine("dialer → disconnected");
  client.expectLine("client ← connected");
  client.expectLine(
      R"(client ← {"failreason":"hotkey not set","response":"HotkeyState","result":false})");
  client.expectLine("client ← disconnected");
  EXPECT_EQ(client.process().wait(), 1);
}

TEST(SeldialUc, AProgramThatCannotBeStartedIsReported) {
  RunningClient client({"--seldial", "/nowhere/seldial"});
  client.expectLine("seldial-uc: cannot start /nowhere/seldial: No such file or directory");
  EXPECT_EQ(client.process().wait(), 1);
  EXPECT_TRUE(client.directoryIsEmpty());
}

/// A fake dialer: a shell script that never registers anything.
class Script {
 public:
  explicit Script(const std::string& text) {
    std::ofstream(path_) << "#!/bin/sh\n" << text;
    chmod(path_.c_str(), 0700);
  }
  [[nodiscard]] std::vector<std::string> arguments() const { return {"--seldial", path_}; }

 private:
  const tests::TemporaryDirectory directory_;
  const std::string path_ = directory_.path("seldial");
};

TEST(SeldialUc, AnyTerminationSignalEndsTheDialerAndThenItselfCleanly) {
  const Script dialer("sleep 1000 & trap 'echo told >&2; kill $!; exit' TERM; echo up >&2; wait");
  std::signal(SIGHUP, SIG_DFL);  // in case the tests themselves run under nohup
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    RunningClient client(dialer.arguments());
    client.expectLine("up");
    client.process().signal(signal);
    client.expectLine("told");
    EXPECT_EQ(client.process().wait(), 0) << signal;
    EXPECT_TRUE(client.directoryIsEmpty());
  }
}

TEST(SeldialUc, AHangUpThatItsStarterIgnoresIsIgnored) {
  const Script dialer("echo $$ >&2; exec sleep 1000");
  std::signal(SIGHUP, SIG_IGN);  // as nohup does
  RunningClient client(dialer.arguments());
  std::signal(SIGHUP, SIG_DFL);
  const pid_t dialerID = std::stoi(client.process().readLine());
  client.process().signal(SIGHUP);
  kill(dialerID, SIGKILL);
  EXPECT_EQ(client.process().wait(), 1);  // the status of an unrequested end
}

TEST(SeldialUc, TheSecondSignalKillsADialerThatDoesNotEnd) {
  const Script dialer("trap '' TERM; echo up >&2; exec sleep 1000");
  auto arguments = dialer.arguments();
  // The client kills a dialer only after this delay.
  arguments.insert(arguments.end(), {"--delay", "65535"});
  RunningClient client(arguments);
  client.expectLine("up");
  client.process().signal(SIGTERM);
  client.process().signal(SIGINT);
  EXPECT_EQ(client.process().wait(), 0);
  EXPECT_TRUE(client.directoryIsEmpty());
}

TEST(SeldialUc, ADialerThatEndsByItselfEndsItWithStatus1) {
  const Script exiting("exit 3");
  RunningClient ended(exiting.arguments());
  ended.expectLine("seldial-uc: seldial ended with status 3");
  EXPECT_EQ(ended.process().wait(), 1);
  EXPECT_TRUE(ended.directoryIsEmpty());

  const Script dying("kill -KILL $$");
  RunningClient killed(dying.arguments());
  killed.expectLine("seldial-uc: seldial was killed by signal 9 (Killed)");
  EXPECT_EQ(killed.process().wait(), 1);
}

TEST(SeldialUc, TheDialerDoesNotOutliveAClientThatIsKilled) {
  const Script dialer("echo up >&2; exec sleep 1000");
  RunningClient client(dialer.arguments());
  client.expectLine("up");
  client.process().signal(SIGKILL);
  EXPECT_EQ(client.process().wait(), 128 + SIGKILL);
  // The dialer keeps the other end of this pipe open until it has ended too.
  EXPECT_THAT([&] { client.process().readLine(); },
              testing::ThrowsMessage<std::runtime_error>(testing::HasSubstr("ended")));
}

TEST(SeldialUc, ADialerThatCannotListenIsReported) {
  const Script dialer(
      R"(echo '{"event":"Log","message":"Unix socket server listen failed at path x."}'; )"
      "exec sleep 1000");
  RunningClient client(dialer.arguments());
  EXPECT_EQ(client.process().readLine().rfind("seldial-uc: seldial cannot listen at ", 0), 0U);
  EXPECT_EQ(client.process().wait(), 1);
}

TEST(SeldialUc, AnInvalidCommandLineEndsItWithStatus2) {
  RunningClient client({"--hotkey", "ctrl+insert"});
  client.expectLine(
      "seldial-uc: --hotkey ctrl+insert: \"insert\" has no virtual key code, so it cannot be a hot "
      "key");
  client.expectLine("Try seldial-uc --help.");
  EXPECT_EQ(client.process().wait(), 2);
}

TEST(SeldialUc, TheVersionIsPrinted) {
  RunningClient client({"--version"});
  client.expectLine("seldial-uc " SELDIAL_VERSION);
  EXPECT_EQ(client.process().wait(), 0);
}

TEST(SeldialUc, HelpIsPrinted) {
  RunningClient client({"--help"});
  client.expectLine("usage: seldial-uc [--dial COMMAND | --open SCHEME] [OPTION...]");
  EXPECT_EQ(client.process().wait(), 0);
}

}  // namespace
}  // namespace seldial
