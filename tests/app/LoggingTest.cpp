#include <thread>

#include "tests/api/Fixtures.h"
#include "tests/app/AppTest.h"

namespace seldial {
namespace {

using Logging = AppTest;
using testing::ElementsAre;
using testing::EndsWith;
using testing::MatchesRegex;
using testing::SizeIs;

TEST_F(Logging, WithoutAFlagNothingIsWritten) {
  app->log("silent");
  EXPECT_EQ(output.text(), "");
}

TEST_F(Logging, LogAloneGivesOnePlainLinePerCall) {
  app->FlagLog = true;
  app->log("process set hotkey");
  app->log("again");
  EXPECT_THAT(output.lines(),
              ElementsAre(MatchesRegex("Log [0-2][0-9]:[0-5][0-9]:[0-6][0-9]> process set hotkey"),
                          EndsWith("> again")));
}

TEST_F(Logging, ThePlainTimeIsLocalAlsoWhenTheZoneChanges) {
  constexpr int kHour = 3600;
  constexpr int kDay = 24 * kHour;
  app->FlagLog = true;
  const auto secondsOfDay = [this](const char* zone) {
    const LocalTimeZone local(zone);
    app->log("now");
    const std::string line = output.lines().back();
    return std::stoi(line.substr(4, 2)) * kHour + std::stoi(line.substr(7, 2)) * 60 +
           std::stoi(line.substr(10, 2));
  };
  const int first = secondsOfDay("AAA0");
  const int later = secondsOfDay("BBB-7");  // seven hours east, and as long as the test has taken
  EXPECT_EQ((later - first + kDay) % kDay / kHour, 7);
}

TEST_F(Logging, JsonLogAloneGivesOneJsonLinePerCall) {
  app->FlagJsonLog = true;
  app->log("process set hotkey");
  const auto lines = output.lines();
  ASSERT_THAT(lines, SizeIs(1));
  EXPECT_EQ(jsonText(lines[0], "event"), "Log");
  EXPECT_EQ(jsonText(lines[0], "message"), "process set hotkey");
  EXPECT_THAT(jsonText(lines[0], "datetime"),
              MatchesRegex("....-..-..T..:..:..[+-][0-9][0-9][0-9][0-9]"));
}

TEST_F(Logging, BothFlagsGiveTwoLinesPlainFirst) {
  app->FlagLog = true;
  app->FlagJsonLog = true;
  app->log("two");
  const auto lines = output.lines();
  ASSERT_THAT(lines, SizeIs(2));
  EXPECT_THAT(lines[0], EndsWith("> two"));
  EXPECT_EQ(jsonText(lines[1], "event"), "Log");
}

TEST_F(Logging, ACallFromABackgroundThreadIsMarked) {
  app->FlagLog = true;
  app->FlagJsonLog = true;
  mainQueue->onMainThread = false;
  app->log("from afar");
  const auto lines = output.lines();
  ASSERT_THAT(lines, SizeIs(2));
  EXPECT_THAT(lines[0], MatchesRegex(">>>SUB THREAD<<< Log ..:..:..> from afar"));
  EXPECT_EQ(jsonText(lines[1], "message"), "from afar");
}

TEST_F(Logging, AnEmptyMessageEndsInTheSpace) {
  app->FlagLog = true;
  app->log("");
  EXPECT_THAT(output.text(), MatchesRegex("Log ..:..:..> \n"));
}

TEST_F(Logging, ALineBreakIsUnalteredInPlainFormAndEscapedInJson) {
  app->FlagLog = true;
  app->FlagJsonLog = true;
  app->log("a\nb");
  const auto lines = output.lines();
  ASSERT_THAT(lines, SizeIs(3));
  EXPECT_THAT(lines[0], EndsWith("> a"));
  EXPECT_EQ(lines[1], "b");
  EXPECT_EQ(jsonText(lines[2], "message"), "a\\nb");
}

TEST_F(Logging, AMessageThatIsNotTextGetsTheFallbackInJson) {
  app->FlagJsonLog = true;
  app->log("\xff");
  EXPECT_THAT(output.text(),
              EndsWith("\",\"event\":\"Log\",\"message\":\"error while serializing [log]\"}\n"));
}

TEST_F(Logging, LinesOfManyThreadsStayWhole) {
  app->FlagLog = true;
  std::vector<std::thread> threads;
  threads.reserve(8);
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([this, i] {
      for (int n = 0; n < 200; ++n) app->log(std::string(1000, static_cast<char>('a' + i)));
    });
  }
  for (auto& thread : threads) thread.join();
  const auto lines = output.lines();
  EXPECT_THAT(lines, SizeIs(1600));
  for (const auto& line : lines) {
    ASSERT_THAT(line, SizeIs(14 + 1000));
    ASSERT_EQ(line.find_first_not_of(line.back(), 14), std::string::npos) << line;
  }
}

}  // namespace
}  // namespace seldial
