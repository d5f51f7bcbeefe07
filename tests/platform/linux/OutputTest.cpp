#include <gtest/gtest.h>
#include <sys/fsuid.h>
#include <sys/stat.h>

#include <atomic>
#include <climits>
#include <csignal>
#include <future>
#include <memory>
#include <thread>

#include "platform/Output.h"
#include "tests/support/UnreadPipe.h"
#include "tests/support/UnreadTerminal.h"
#include "tests/support/Waiting.h"

namespace seldial::platform {
namespace {

using std::chrono::milliseconds;

struct OutputTest : testing::Test {
  void expectCompleteLongLines() const {
    LineOutput patient(pipe.writingEnd(), tests::kTimeLimit);
    for (const int size : {PIPE_BUF - 1, PIPE_BUF, 10 * PIPE_BUF, 10 * PIPE_BUF + 7}) {
      const std::string line(static_cast<std::size_t>(size), 'x');
      std::thread writer([&] { EXPECT_EQ(patient.print(line), 0U); });
      std::string text;
      while (text.size() <= line.size()) text += pipe.take();
      writer.join();
      EXPECT_TRUE(text == line + "\n") << size;
    }
  }

  tests::UnreadPipe pipe;
  LineOutput output{pipe.writingEnd(), milliseconds(20)};
};

TEST_F(OutputTest, ALineEndsWithALineBreak) {
  EXPECT_EQ(output.print("one"), 0U);
  EXPECT_EQ(output.print(""), 0U);
  EXPECT_EQ(pipe.take(), "one\n\n");
}

TEST_F(OutputTest, ALineLongerThanThePipeIsReadWhole) {
  expectCompleteLongLines();
}

TEST_F(OutputTest, PiecesAreOneLine) {
  const std::string piece(PIPE_BUF - 1, 'x');
  EXPECT_EQ(output.print([&](const auto& take) {
    for (const auto& next : {std::string(), std::string("1"), piece, std::string("2")}) {
      EXPECT_TRUE(take(next));
    }
  }),
            0U);
  EXPECT_EQ(pipe.take(), "1" + piece + "2\n");
}

TEST_F(OutputTest, NoMorePiecesAreTakenOnceTheLineIsLost) {
  const std::string piece(tests::UnreadPipe::kSize, 'x');
  int taken = 0;
  output.print([&](const auto& take) {
    while (take(piece)) ++taken;
  });
  EXPECT_LE(taken, 1);
  EXPECT_EQ(pipe.take(), piece);
  EXPECT_EQ(output.print("next"), 1U);
}

TEST_F(OutputTest, ANonBlockingPipeIsWaitedForToo) {
  ASSERT_EQ(fcntl(pipe.writingEnd(), F_SETFL, O_NONBLOCK), 0);
  expectCompleteLongLines();
}

TEST_F(OutputTest, WithoutSpaceLinesAreLostAndCountedOnceThereIsSpace) {
  pipe.fill();
  for (int i = 0; i < 3; ++i) EXPECT_EQ(output.print("lost"), 0U);
  (void)pipe.take();
  EXPECT_EQ(output.print("first"), 3U);
  EXPECT_EQ(output.print("second"), 0U);
  EXPECT_EQ(pipe.take(), "first\nsecond\n");
}

TEST_F(OutputTest, TheCountCanBeTakenBeforeThereIsSpace) {
  pipe.fill();
  output.print("lost");
  EXPECT_EQ(output.takeLost(), 1U);
  EXPECT_EQ(output.takeLost(), 0U);
}

TEST_F(OutputTest, OnlyTheFirstLineThatIsLostWaits) {
  LineOutput patient(pipe.writingEnd(), milliseconds(200));
  const auto begin = std::chrono::steady_clock::now();
  for (int i = 0; i < 1000; ++i) patient.print(std::string(100, 'x'));
  EXPECT_LT(std::chrono::steady_clock::now() - begin, tests::kTimeLimit) << "1000 waits take 200 s";
}

TEST_F(OutputTest, ALineThatIsLostAfterItsBeginningEndsWithALineBreak) {
  output.print(std::string(2 * tests::UnreadPipe::kSize, 'x'));
  EXPECT_EQ(pipe.take(), std::string(tests::UnreadPipe::kSize, 'x'));
  EXPECT_EQ(output.print("next"), 1U);
  EXPECT_EQ(pipe.take(), "\nnext\n");
}

TEST_F(OutputTest, AClosedPipeLosesLinesSilently) {
  const auto before = std::signal(SIGPIPE, SIG_IGN);
  int ends[2];
  ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
  close(ends[0]);
  LineOutput closed(ends[1], milliseconds(20));
  for (int i = 0; i < 3; ++i) EXPECT_EQ(closed.print("nobody"), 0U);
  EXPECT_EQ(closed.takeLost(), 0U);
  close(ends[1]);
  std::signal(SIGPIPE, before);
}

TEST_F(OutputTest, TheFlagsOfTheDescriptorAreNotChanged) {
  const int before = fcntl(pipe.writingEnd(), F_GETFL);
  pipe.fill();
  output.print("lost");
  EXPECT_EQ(fcntl(pipe.writingEnd(), F_GETFL), before);
}

enum class Kind { kCooked, kRaw, kForbidden };

/// For kForbidden, the output of a process that may not open the terminal which it has inherited.
std::unique_ptr<LineOutput> makeOutput(Kind kind, int descriptor, milliseconds timeout) {
  if (kind != Kind::kForbidden) return std::make_unique<LineOutput>(descriptor, timeout);
  EXPECT_EQ(fchmod(descriptor, 0), 0);
  setfsuid(65534);  // for root, who may open everything; refused to others
  auto output = std::make_unique<LineOutput>(descriptor, timeout);
  setfsuid(geteuid());
  return output;
}

struct TerminalOutputTest : testing::TestWithParam<Kind> {
  /// Prints `line` until one is lost, and expects that no print() waits for the window.
  void fillWith(const std::string& line) {
    std::atomic<bool> givenUp = false;
    auto filled = std::async(std::launch::async, [&] {
      while (output->takeLost() == 0 && !givenUp) output->print(line);
    });
    givenUp = filled.wait_for(tests::kTimeLimit) != std::future_status::ready;
    EXPECT_FALSE(givenUp) << "writing blocks";
    if (givenUp) terminal.hangUp();
  }

  tests::UnreadTerminal terminal{GetParam() == Kind::kRaw ? tests::UnreadTerminal::Mode::kRaw
                                                          : tests::UnreadTerminal::Mode::kCooked};
  std::unique_ptr<LineOutput> output = makeOutput(GetParam(), terminal.end(), milliseconds(20));
};

TEST_P(TerminalOutputTest, AFrozenWindowLosesLinesWithoutBlocking) {
  fillWith(std::string(97, 'x'));
  fillWith(std::string(3 * PIPE_BUF, 'y'));
}

TEST_P(TerminalOutputTest, OnceTheWindowGoesOnItShowsWholeLinesAgain) {
  fillWith(std::string(97, 'x'));
  std::string text;
  EXPECT_TRUE(tests::eventually([&] {
    output->print("next");
    text += terminal.take();
    return text.find("\nnext") != std::string::npos;
  }));
}

TEST_P(TerminalOutputTest, TheFlagsOfTheTerminalThatOthersShareAreNotChanged) {
  const int before = fcntl(terminal.end(), F_GETFL);
  fillWith("line");
  EXPECT_EQ(fcntl(terminal.end(), F_GETFL), before);
}

TEST_P(TerminalOutputTest, BesideAnotherWriterNoLineIsLost) {
  const auto patient = makeOutput(GetParam(), terminal.end(), tests::kTimeLimit);
  std::atomic<bool> over = false;
  std::thread window([&] {
    while (!over) (void)terminal.take();
  });
  std::thread other([&] {
    while (!over) EXPECT_GT(write(terminal.end(), "other\n", 6), 0);
  });
  for (int i = 0; i < 300; ++i) patient->print("line");
  over = true;
  other.join();
  window.join();
  EXPECT_EQ(patient->takeLost(), 0U);
}

TEST_P(TerminalOutputTest, AClosedWindowLosesLinesSilently) {
  terminal.hangUp();
  for (int i = 0; i < 3; ++i) EXPECT_EQ(output->print("nobody"), 0U);
  EXPECT_EQ(output->takeLost(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Kinds, TerminalOutputTest,
                         testing::Values(Kind::kCooked, Kind::kRaw, Kind::kForbidden));

}  // namespace
}  // namespace seldial::platform
