// Clients that behave badly, and many of them.
#include <sys/resource.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <thread>

#include "tests/support/ProcessState.h"
#include "tests/support/SeldialProcess.h"

namespace seldial::tests {
namespace {

using Robustness = ProgramTest;

constexpr const char* kNoTag = "command tag not found";

TEST_F(Robustness, AfterALongGarbageTheProgramIsBackToItsSizeAndServes) {
  startQuietly();
  EXPECT_THAT(answerTo("{}"), IsError(kNoTag));
  const long before = statusValue("RssAnon", process->id());
  EXPECT_THAT(answerTo(std::string(64UL << 20, 'g')), IsError(kNoTag));
  EXPECT_THAT(answerTo("{}"), IsError(kNoTag));
  if (SELDIAL_SANITIZED) return;  // a sanitizer keeps freed memory
  EXPECT_TRUE(eventually([&] { return statusValue("RssAnon", process->id()) < before + 1024; }))
      << statusValue("RssAnon", process->id()) << " kB after " << before;
}

TEST_F(Robustness, FiveHundredClientsThatNeverLeaveDoNotStarveTheNext) {
  allowDescriptors(1024);
  startListening();
  std::vector<Peer> held;
  for (int i = 0; i < 500; ++i) {
    held.push_back(Peer::connectedTo(in));
    ASSERT_TRUE(held.back().connected());
  }
  EXPECT_THAT(answerTo("{}"), IsError(kNoTag));
  held.clear();
  EXPECT_TRUE(eventually([this] { return runningThreads(process->id()) < 10U; }))
      << runningThreads(process->id());
  EXPECT_TRUE(eventually([this] { return openDescriptors(process->id()) < 20U; }));
}

TEST_F(Robustness, IfNoDescriptorIsLeftTheIncomingSocketClosesAndTheProgramContinues) {
  startListening();
  const rlimit few{20, 20};
  ASSERT_EQ(prlimit(process->id(), RLIMIT_NOFILE, &few, nullptr), 0);
  std::vector<Peer> held;
  for (rlim_t i = 0; i < few.rlim_max; ++i) held.push_back(Peer::connectedTo(in));
  EXPECT_TRUE(process->waitForLine("Unix socket server; did fail to accept"));
  EXPECT_TRUE(process->waitForLine("Unix socket server; did close"));
  EXPECT_FALSE(std::filesystem::exists(in));
  EXPECT_TRUE(process->isRunning());
  terminate();
}

TEST_F(Robustness, AClientSocketWithoutAListenerLosesOnlyTheMessage) {
  out = directory.path("nobody");
  startListening();
  sendCommand(in, {"{}"});
  EXPECT_TRUE(process->waitForLine(kNoTag));
  EXPECT_TRUE(process->waitForLine("Unix socket client connect failed"));
  sendCommand(in, {"{}"});
  EXPECT_TRUE(process->waitForLine("Unix socket client connect failed"));
}

TEST_F(Robustness, AClientThatClosesAtOnceDoesNoHarm) {
  startListening();
  for (int i = 0; i < 50; ++i) {
    sendCommand(in, {"{}"});
    (void)client.accepted();
  }
  ASSERT_TRUE(process->isRunning());
  EXPECT_THAT(answerTo(""), IsError("empty string on standard input stream"));
}

TEST_F(Robustness, AClientThatNeitherAcceptsNorReadsDoesNotStopTheProgram) {
  const UcListener deaf(directory.path("deaf"), 0);
  out = directory.path("deaf");
  startListening();
  sendCommand(in, {"{}"});
  EXPECT_TRUE(process->waitForLine("Unix socket client connect ok"));
  sendCommand(in, {"{}"});
  EXPECT_TRUE(process->waitForLine("Unix socket client connect failed"));
  terminate();
}

TEST_F(Robustness, AClientThatNeverReadsALongMessageDoesNotStopTheProgram) {
  const UcListener deaf(directory.path("deaf"));
  out = directory.path("deaf");
  startListening();
  sendCommand(in, {R"({"command":")" + std::string(4UL << 20, 'x') + "\"}"});
  EXPECT_TRUE(process->waitForLine("Unix socket client bytes written ("));
  EXPECT_TRUE(process->waitForLine("Now closing unix socket client."));
}

TEST_F(Robustness, AClientThatReadsALongMessageSlowlyHoldsTheNextUpForFiveSeconds) {
  startQuietly();
  sendCommand(in, {R"({"command":")" + std::string(4UL << 20, 'x') + "\"}"});
  const Peer slow = client.accepted();
  const auto begin = std::chrono::steady_clock::now();
  sendCommand(in, {"{}"});
  std::atomic<bool> over{false};
  std::thread reading([&] {  // each read frees space, so that no wait is long
    while (!over && slow.receive(65536).size() == 65536) {
      std::this_thread::sleep_for(std::chrono::seconds(1));
    }
  });
  EXPECT_THAT(client.nextMessage(), IsError(kNoTag));
  const auto took = std::chrono::steady_clock::now() - begin;
  over = true;
  reading.join();
  EXPECT_GT(took, std::chrono::seconds(4));
  EXPECT_LT(took, std::chrono::seconds(30)) << "at that pace, 4 MiB take a minute";
}

TEST_F(Robustness, ManyCommandsAreAnsweredEachOnceInOrder) {
  startListening();
  for (int i = 0; i < 300; ++i) {
    const std::string name = "n" + std::to_string(i);
    ASSERT_THAT(answerTo(R"({"command":")" + name + "\"}"), IsError("invalid command: " + name));
  }
  EXPECT_TRUE(eventually([this] { return openDescriptors(process->id()) < 20U; }));
}

TEST_F(Robustness, TerminationWhileClientsAreConnectedIsOrderly) {
  startListening();
  std::vector<Peer> held;
  for (int i = 0; i < 20; ++i) held.push_back(Peer::connectedTo(in));
  ASSERT_TRUE(process->waitForLine("did accept client"));
  terminate();
  EXPECT_EQ(process->errors(), "");
}

}  // namespace
}  // namespace seldial::tests
