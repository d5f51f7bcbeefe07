#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <future>

#include "client/Connection.h"
#include "tests/support/Sockets.h"
#include "tests/support/TemporaryDirectory.h"

namespace seldial {
namespace {

TEST(Connection, ACommandIsSentOverASeparateConnection) {
  const tests::TemporaryDirectory directory;
  const tests::UcListener seldial(directory.path("in"));
  EXPECT_TRUE(isListening(directory.path("in")));
  (void)seldial.nextMessage();
  EXPECT_EQ(sendCommand("the command", directory.path("in")), std::nullopt);
  EXPECT_EQ(seldial.nextMessage(), "the command");
}

TEST(Connection, IfNobodyListensTheReasonIsGiven) {
  const tests::TemporaryDirectory directory;
  EXPECT_EQ(sendCommand("x", directory.path("in")),
            "nobody answers at " + directory.path("in") + ": No such file or directory");
  EXPECT_EQ(sendCommand("x", "in"), "in cannot be the path of a socket");
  EXPECT_FALSE(isListening(directory.path("in")));
}

TEST(Connection, ASeldialThatDoesNotAcceptIsNotWaitedForForever) {
  const tests::TemporaryDirectory directory;
  const tests::UcListener seldial(directory.path("in"), 0);
  EXPECT_EQ(sendCommand("first", directory.path("in")), std::nullopt);
  EXPECT_NE(sendCommand("second", directory.path("in")), std::nullopt);
}

TEST(HotKeyTrial, IsNotifiedOfTheNextUseOnce) {
  const tests::TemporaryDirectory directory;
  setenv("XDG_RUNTIME_DIR", directory.path("").c_str(), 1);
  EXPECT_EQ(HotKeyTrial::start({}), nullptr);
  const auto client = tests::Peer::listeningAt(directory.path("seldial-uc"));
  std::promise<void> used;
  auto trial = HotKeyTrial::start([&used] { used.set_value(); });
  ASSERT_TRUE(trial);
  const auto connection = client.accepted();
  EXPECT_EQ(connection.receive(4), "try\n");
  EXPECT_TRUE(connection.send("used\n"));
  used.get_future().wait();
  trial.reset();
  EXPECT_EQ(connection.receiveToTheEnd(), "");
}

TEST(Connection, TheControlSocketIsInAPrivateDirectory) {
  const tests::TemporaryDirectory directory;
  setenv("TMPDIR", "/tmp", 1);
  setenv("XDG_RUNTIME_DIR", directory.path("").c_str(), 1);
  EXPECT_EQ(controlSocketPath(), directory.path("seldial-uc"));
  ASSERT_EQ(chmod(directory.path("").c_str(), 0755), 0);
  EXPECT_EQ(controlSocketPath(), "");
  setenv("XDG_RUNTIME_DIR", "relative", 1);
  EXPECT_EQ(controlSocketPath(), "");
  std::string error;
  EXPECT_EQ(askRunningClient(kStatusRequest, error), std::nullopt);
  EXPECT_EQ(error, "seldial-uc is not running");
}

}  // namespace
}  // namespace seldial
