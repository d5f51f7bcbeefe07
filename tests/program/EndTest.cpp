// Signals end the program, whatever it is doing.
#include <atomic>
#include <csignal>
#include <filesystem>
#include <stdexcept>
#include <thread>

#include "tests/support/ProcessState.h"
#include "tests/support/SeldialProcess.h"

namespace seldial::tests {
namespace {

class End : public ProgramTest {
 protected:
  void TearDown() override {
    EXPECT_EQ(process->wait(), 0);
    EXPECT_EQ(process->errors(), "");
    EXPECT_FALSE(std::filesystem::exists(in));
  }
};

TEST_F(End, WhileAUcClientDoesNotAccept) {
  const UcListener deaf(directory.path("deaf"), 0);
  out = directory.path("deaf");
  startListening();
  for (int i = 0; i < 20; ++i) sendCommand(in, {"{}"});  // 5 s each but for the first
  ASSERT_TRUE(process->waitForLine("Now closing unix socket client."));
  ASSERT_TRUE(process->waitForLine("Process Unix socket input string."));
  terminate();
}

TEST_F(End, WhileAUcClientDoesNotRead) {
  startQuietly();
  for (int i = 0; i < 20; ++i) {
    sendCommand(in, {R"({"command":")" + std::string(1UL << 20, 'x') + "\"}"});
  }
  const Peer reader = client.accepted();
  (void)reader.receive(1);
  terminate();
}

TEST_F(End, UnderFiveHundredConnectedClients) {
  allowDescriptors(1024);
  startListening();
  std::vector<Peer> held;
  held.reserve(500);
  for (int i = 0; i < 500; ++i) held.push_back(Peer::connectedTo(in));
  for (int i = 0; i < 500; ++i) ASSERT_TRUE(process->waitForLine("did accept client"));
  terminate();
}

TEST_F(End, InAFloodOfCommands) {
  startQuietly();
  std::atomic<int> sent{0};
  std::thread flood([&] {
    try {
      for (;; ++sent) sendCommand(in, {"{}"});
    } catch (const std::runtime_error&) {  // nobody listens any more
    }
  });
  for (int i = 0; i < 100; ++i) EXPECT_THAT(client.nextMessage(), IsError("command tag not found"));
  process->signal(SIGTERM);
  EXPECT_TRUE(eventually([this] {
    if (client.hasConnection()) (void)client.nextMessage();
    return !process->isRunning();
  }));
  flood.join();
}

}  // namespace
}  // namespace seldial::tests
