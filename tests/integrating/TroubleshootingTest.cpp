// The entries of docs/troubleshooting.md that need no desktop: each test reproduces a symptom.
#include <sys/socket.h>

#include <csignal>
#include <filesystem>
#include <thread>

#include "tests/support/SeldialProcess.h"

namespace seldial::tests {
namespace {

using Troubleshooting = ProgramTest;

constexpr const char* kSetHotKey = R"({"command":"SetHotKey","virtualkey":2,"modifierAlt":true})";

TEST_F(Troubleshooting, EverythingIsRefusedAndStandardErrorSaysNoXServerAt) {
  startListening("unix:65535");
  EXPECT_THAT(answerTo(kSetHotKey), IsHotkeyStateFalse("hotkey not set"));
  terminate();
  EXPECT_THAT(process->errors(), testing::HasSubstr("no X server at unix:65535"));
}

TEST_F(Troubleshooting, EverythingIsRefusedAndStandardErrorIsEmpty) {
  startListening();
  EXPECT_THAT(answerTo(kSetHotKey), IsHotkeyStateFalse("hotkey not set"));
  terminate();
  EXPECT_EQ(process->errors(), "");
}

TEST_F(Troubleshooting, TheAnswerIsInvalidVirtualKeyValue) {
  startListening();
  EXPECT_THAT(answerTo(R"({"command":"SetHotKey","virtualkey":"2"})"),
              IsHotkeyStateFalse("invalid virtual key value"));
}

TEST_F(Troubleshooting, TheConnectionIsRefused) {
  startListening();
  process->signal(SIGKILL);
  process->wait();
  EXPECT_TRUE(std::filesystem::exists(in));
  EXPECT_FALSE(Peer::connectedTo(in).connected());
  startListening();
  EXPECT_TRUE(Peer::connectedTo(in).connected());
}

TEST_F(Troubleshooting, ThereIsNoSocketFile) {
  in = directory.path("missing/in");
  start();
  EXPECT_TRUE(process->waitForLine("listen failed"));
  EXPECT_FALSE(std::filesystem::exists(in));
  for (const std::string& path : {directory.path(std::string(103, 'x')), directory.path("./in")}) {
    in = path;
    start();
    EXPECT_TRUE(process->waitForLine("Failed to start"));
    EXPECT_FALSE(std::filesystem::exists(in));
  }
}

TEST_F(Troubleshooting, NoAnswerComesUntilYouClose) {
  startListening();
  Peer peer = Peer::connectedTo(in);
  ASSERT_TRUE(peer.send(kSetHotKey));
  ASSERT_TRUE(process->waitForLine("did receive: "));
  EXPECT_FALSE(client.hasConnection());
  ::shutdown(peer.fd, SHUT_WR);
  EXPECT_THAT(client.nextMessage(), IsHotkeyStateFalse("hotkey not set"));
}

TEST_F(Troubleshooting, TheAnswerIsCommandTagNotFound) {
  startListening();
  for (const std::string& text : {std::string(kSetHotKey) + kSetHotKey, std::string("{'a':1}")}) {
    EXPECT_THAT(answerTo(text), IsError("command tag not found"));
  }
}

TEST_F(Troubleshooting, TheAnswerIsEmptyStringOnStandardInputStream) {
  startListening();
  EXPECT_THAT(answerTo(""), IsError("empty string on standard input stream"));
}

TEST_F(Troubleshooting, AnswersToSomeCommandsAreMissing) {
  startListening();
  Peer first = Peer::connectedTo(in);
  ASSERT_TRUE(first.send(kSetHotKey));
  ASSERT_TRUE(process->waitForLine("did receive: "));
  EXPECT_THAT(answerTo(""), IsError("empty string on standard input stream"));
  EXPECT_TRUE(process->waitForLine("PURGED !!!"));
  first.leave();
  EXPECT_THAT(answerTo("{}"), IsError("command tag not found"));  // there was no answer in between
}

TEST_F(Troubleshooting, AllAnswersAreMissingAndTheLogSaysConnectFailed) {
  out = directory.path("nobody");
  startListening();
  sendCommand(in, {kSetHotKey});
  EXPECT_TRUE(process->waitForLine("HotkeyState"));
  EXPECT_TRUE(process->waitForLine("connect failed"));
}

TEST_F(Troubleshooting, ItEndsWithStatus0) {
  startListening();
  process->signal(SIGTERM);
  EXPECT_EQ(process->wait(), 0);
}

TEST_F(Troubleshooting, ItEndsBySignal6SIGABRT) {
  startListening();
  sendCommand(in, {"[]"});
  EXPECT_EQ(process->wait(), 128 + SIGABRT);
}

TEST_F(Troubleshooting, ItEndsTogetherWithAThreadOfTheUCClient) {
  std::thread starter([this] {
    startListening();  // a ChildProcess asks to be killed when its parent is gone
    EXPECT_THAT(answerTo("{}"), IsError("command tag not found"));
  });
  starter.join();
  EXPECT_EQ(process->wait(), 128 + SIGKILL);
}

}  // namespace
}  // namespace seldial::tests
