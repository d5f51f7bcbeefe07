// Nobody reads the program's output: it keeps working, and it ends when it is told to.
#include <chrono>

#include "tests/support/SeldialProcess.h"
#include "tests/support/UnreadPipe.h"
#include "tests/support/UnreadTerminal.h"

namespace seldial::tests {
namespace {

constexpr const char* kNoTag = "command tag not found";

class Stuck : public ProgramTest {
 protected:
  /// Starts with a pipe for its output that is full after a few commands, and fills it.
  void startUnread(const std::vector<std::string>& flags,
                   Streams::Errors errors = Streams::Errors::kCaptured) {
    start(flags, {}, {errors, {}, pipe.writingEnd()});
    waitUntilListening();
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < 100; ++i) ASSERT_THAT(answerTo("{}"), IsError(kNoTag));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(30))
        << "each waits for a second";
    EXPECT_TRUE(pipe.full());
  }

  UnreadPipe pipe;
};

TEST_F(Stuck, MessagesGoToTheSocketThoughNobodyReadsStandardOutput) {
  startUnread({});
  terminate();
}

TEST_F(Stuck, LogLinesThatNobodyReadsBlockNothing) {
  startUnread({"-log", "-jsonlog"});
  terminate();
}

TEST_F(Stuck, OneLineOnStandardErrorSaysHowManyLinesWereLost) {
  startUnread({});
  const std::string before = pipe.take();
  EXPECT_THAT(answerTo("[}"), IsError(kNoTag));
  EXPECT_TRUE(pipe.take().starts_with("{")) << "the first line that there is room for again";
  terminate();
  const auto received = std::count(before.begin(), before.end(), '{');
  EXPECT_EQ(process->errors(), "seldial: nobody read standard output; lines lost: " +
                                   std::to_string(101 - received) + "\n");
}

TEST_F(Stuck, AtTheEndItReportsHowManyLinesWereLost) {
  startUnread({});
  terminate();
  EXPECT_THAT(process->errors(), testing::StartsWith("seldial: nobody read standard output"));
}

TEST_F(Stuck, NorDoesStandardErrorBlockAnything) {
  startUnread({"-log"}, Streams::Errors::kWithOutput);
  terminate();
}

TEST_F(Stuck, AFrozenTerminalBlocksNothingEither) {
  const UnreadTerminal terminal;
  start({"-log"}, {}, {Streams::Errors::kWithOutput, {}, terminal.end()});
  waitUntilListening();
  for (int i = 0; i < 100; ++i) ASSERT_THAT(answerTo("{}"), IsError(kNoTag));
  terminate();
}

TEST_F(Stuck, TheReferenceTextsEndToo) {
  pipe.fill();
  start({"-help", "-changelog", "-showapi"}, {},
        {Streams::Errors::kCaptured, {}, pipe.writingEnd()});
  EXPECT_EQ(process->wait(), 0);
}

}  // namespace
}  // namespace seldial::tests
