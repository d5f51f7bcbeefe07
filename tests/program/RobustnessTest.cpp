// Clients that behave badly, and many of them.
#include <sys/resource.h>
#include <sys/socket.h>

#include <filesystem>

#include "tests/program/ProgramTest.h"

namespace seldial::tests {
namespace {

using Robustness = ProgramTest;

constexpr const char* kNoTag = "command tag not found";

TEST_F(Robustness, AfterALongGarbageTheProgramIsBackToItsSizeAndServes) {
  startQuietly();
  EXPECT_THAT(answerTo("{}"), IsError(kNoTag));
  const long before = process->statusValue("RssAnon");
  EXPECT_THAT(answerTo(std::string(64UL << 20, 'g')), IsError(kNoTag));
  EXPECT_THAT(answerTo("{}"), IsError(kNoTag));
  if (SELDIAL_SANITIZED) return;  // a sanitizer keeps what was freed
  EXPECT_TRUE(eventually([&] { return process->statusValue("RssAnon") < before + 1024; }))
      << process->statusValue("RssAnon") << " kB after " << before;
}

TEST_F(Robustness, FiveHundredClientsThatNeverLeaveDoNotStarveTheNext) {
  startListening();
  std::vector<int> held;
  for (int i = 0; i < 500; ++i) {
    held.push_back(connectTo(in));
    ASSERT_NE(held.back(), -1);
  }
  EXPECT_THAT(answerTo("{}"), IsError(kNoTag));
  for (const int connection : held) close(connection);
  EXPECT_TRUE(eventually([this] { return process->statusValue("Threads") < 10; }))
      << process->statusValue("Threads");
  EXPECT_TRUE(eventually([this] { return process->openDescriptors() < 20; }));
}

TEST_F(Robustness, WhereNoDescriptorIsLeftTheIncomingSocketClosesAndTheProgramStays) {
  startListening();
  const rlimit few{20, 20};
  ASSERT_EQ(prlimit(process->pid(), RLIMIT_NOFILE, &few, nullptr), 0);
  std::vector<int> held(few.rlim_max);
  for (int& connection : held) connection = connectTo(in);
  EXPECT_TRUE(process->waitForLine("Unix socket server; did fail to accept"));
  EXPECT_TRUE(process->waitForLine("Unix socket server; did close"));
  EXPECT_FALSE(std::filesystem::exists(in));
  EXPECT_TRUE(process->isRunning());
  process->signal(SIGTERM);
  EXPECT_EQ(process->wait(), 0);
  for (const int connection : held) close(connection);
}

TEST_F(Robustness, AClientSocketThatNobodyListensOnLosesTheMessageOnly) {
  out = directory.path("nobody");
  startListening();
  sendCommand(in, {"{}"});
  EXPECT_TRUE(process->waitForLine(kNoTag));
  EXPECT_TRUE(process->waitForLine("Unix socket client connect failed"));
  sendCommand(in, {"{}"});
  EXPECT_TRUE(process->waitForLine("Unix socket client connect failed"));
}

TEST_F(Robustness, AClientThatClosesAtOnceIsNoTrouble) {
  startListening();
  for (int i = 0; i < 50; ++i) {
    sendCommand(in, {"{}"});
    const int connection = accept(client.descriptor(), nullptr, nullptr);
    close(connection);
  }
  ASSERT_TRUE(process->isRunning());
  EXPECT_THAT(answerTo(""), IsError("empty string on standard input stream"));
}

TEST_F(Robustness, AClientThatNeitherAcceptsNorReadsDoesNotStopTheProgram) {
  const tests::UcListener deaf(directory.path("deaf"), 0);
  out = directory.path("deaf");
  startListening();
  sendCommand(in, {"{}"});
  EXPECT_TRUE(process->waitForLine("Unix socket client connect ok"));
  sendCommand(in, {"{}"});
  EXPECT_TRUE(process->waitForLine("Unix socket client connect failed"));
  process->signal(SIGTERM);
  EXPECT_EQ(process->wait(), 0);
}

TEST_F(Robustness, AClientThatNeverReadsALongMessageDoesNotStopTheProgram) {
  const tests::UcListener deaf(directory.path("deaf"));
  out = directory.path("deaf");
  startListening();
  sendCommand(in, {R"({"command":")" + std::string(4UL << 20, 'x') + "\"}"});
  EXPECT_TRUE(process->waitForLine("Unix socket client bytes written ("));
  EXPECT_TRUE(process->waitForLine("Now closing unix socket client."));
}

TEST_F(Robustness, ManyCommandsAreAnsweredEachOnceInOrder) {
  startListening();
  for (int i = 0; i < 300; ++i) {
    const std::string name = "n" + std::to_string(i);
    ASSERT_THAT(answerTo(R"({"command":")" + name + "\"}"), IsError("invalid command: " + name));
  }
  EXPECT_TRUE(eventually([this] { return process->openDescriptors() < 20; }));
}

TEST_F(Robustness, TerminationWhileClientsAreConnectedIsOrderly) {
  startListening();
  std::vector<int> held(20);
  for (int& connection : held) connection = connectTo(in);
  ASSERT_TRUE(process->waitForLine("did accept client"));
  process->signal(SIGTERM);
  EXPECT_EQ(process->wait(), 0);
  EXPECT_EQ(process->errors(), "");
  for (const int connection : held) close(connection);
}

}  // namespace
}  // namespace seldial::tests
