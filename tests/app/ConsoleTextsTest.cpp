#include <fstream>
#include <iterator>

#include "tests/app/AppTest.h"

namespace seldial {
namespace {

using ConsoleTexts = AppTest;
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

std::string golden(const std::string& name) {
  std::ifstream file(SELDIAL_TEXTS "/" + name, std::ios::binary);
  EXPECT_TRUE(file.good()) << name;
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST_F(ConsoleTexts, TheBannerHasEightLinesAndNothingElse) {
  app->showBanner();
  const auto lines = output.lines();
  ASSERT_EQ(lines.size(), 8U);
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_TRUE(lines[i].size() == 51 || lines[i].size() == 52) << lines[i];
    EXPECT_EQ(lines[i].find_first_not_of("_/\\|(),` "), std::string::npos) << lines[i];
  }
  EXPECT_EQ(lines[5], std::string(32, ' ') + "macOS Mojave version");
  EXPECT_THAT(lines[6], StartsWith(std::string(32, ' ') + "©"));
  EXPECT_EQ(lines[7], "");
}

TEST_F(ConsoleTexts, TheUsageTextIsExact) {
  app->showHelp();
  EXPECT_EQ(output.text(), golden("help.txt"));
}

TEST_F(ConsoleTexts, TheChangeLogIsExact) {
  app->showChangeLog();
  EXPECT_EQ(output.text(), golden("changelog.txt"));
  EXPECT_EQ(output.lines().size(), 33U);
}

TEST_F(ConsoleTexts, TheChangeLogBeginsWithItsNewestDateAndEndsWithAnEmptyLine) {
  app->showChangeLog();
  EXPECT_THAT(output.text(), StartsWith("2018.11.01\n"));
  EXPECT_THAT(output.text(), EndsWith("\n  Change log added\n\n"));
}

TEST_F(ConsoleTexts, ShowApiPrintsFiveBlocksEachFollowedByAnEmptyLine) {
  app->showApi();
  EXPECT_EQ(output.text(), golden("showapi.txt"));
  const auto lines = output.lines();
  std::vector<std::string> first = {lines.at(0)};
  for (std::size_t i = 1; i < lines.size(); ++i) {
    if (lines[i - 1].empty()) first.push_back(lines[i]);
  }
  EXPECT_THAT(first, testing::ElementsAre("Log []->", "MakeCall []->", "SetHotKey ->[]",
                                          "Error []->", "HotkeyState []->"));
  EXPECT_EQ(lines.back(), "");
}

TEST_F(ConsoleTexts, TheModifierSymbolsAreThreeBytesEach) {
  app->showApi();
  const std::string text = output.text();
  EXPECT_THAT(text, HasSubstr("\"\xe2\x8c\xa5\" (option)"));
  EXPECT_THAT(text, HasSubstr("\"\xe2\x8c\x98\" (command)"));
  EXPECT_THAT(text, HasSubstr("\"\xe2\x8c\x83\" (control)"));
  EXPECT_THAT(text, HasSubstr("\"\xe2\x87\xa7\" (shift)"));
}

}  // namespace
}  // namespace seldial
