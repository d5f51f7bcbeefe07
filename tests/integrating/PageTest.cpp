// docs/integrating.md and docs/troubleshooting.md match the tests of this folder.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <sstream>
#include <string>

namespace seldial::tests {
namespace {

/// Converts "Seldial creates no folders." to "SeldialCreatesNoFolders".
std::string testNameOf(const std::string& statement) {
  std::string name;
  bool startsWord = true;
  for (const char letter : statement) {
    const auto byte = static_cast<unsigned char>(letter);
    if (std::isalnum(byte) != 0) {
      name += startsWord ? static_cast<char>(std::toupper(byte)) : letter;
      startsWord = false;
    } else if (letter != '\'') {
      startsWord = true;
    }
  }
  return name;
}

std::string page(const std::string& name) {
  std::ifstream file(SELDIAL_DOCS "/" + name);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::set<std::string> statements() {
  std::string text = page("integrating.md");
  text.erase(0, text.find("\n## "));  // the introduction explains the bold type
  static const std::regex bold(R"(\*\*([^*]+)\*\*)");
  std::set<std::string> names;
  for (std::sregex_iterator match(text.begin(), text.end(), bold), end; match != end; ++match) {
    names.insert(testNameOf((*match)[1]));
  }
  return names;
}

/// The symptoms. A row without a symptom, which has the same symptom as the row above, is named
/// after its cause.
std::set<std::string> symptoms() {
  std::istringstream lines(page("troubleshooting.md"));
  static const std::regex row(R"(\| ([^|]*)\| ([^|]*)\|.*)");
  std::set<std::string> names;
  for (std::string line; std::getline(lines, line);) {
    std::smatch cells;
    if (!std::regex_match(line, cells, row) || cells[1] == "Symptom ") continue;
    const bool isNew = names.insert(testNameOf(cells.length(1) > 0 ? cells[1] : cells[2])).second;
    EXPECT_TRUE(isNew) << line << " has the name of another entry";
  }
  return names;
}

/// The names of the tests in suites whose names begin with `suites`.
std::set<std::string> testsOf(const std::string& suites) {
  std::set<std::string> names;
  const auto& all = *testing::UnitTest::GetInstance();
  for (int suite = 0; suite < all.total_test_suite_count(); ++suite) {
    const auto& tests = *all.GetTestSuite(suite);
    if (!std::string(tests.name()).starts_with(suites)) continue;
    for (int test = 0; test < tests.total_test_count(); ++test) {
      names.insert(tests.GetTestInfo(test)->name());
    }
  }
  return names;
}

TEST(IntegrationPage, EachStatementIsATestAndEachTestAStatement) {
  EXPECT_THAT(statements(), testing::SizeIs(testing::Gt(20)));
  EXPECT_EQ(statements(), testsOf("Integrating"));
}

TEST(PageOfTroubleshooting, EachEntryIsATestAndEachTestAnEntry) {
  EXPECT_THAT(symptoms(), testing::SizeIs(testing::Gt(20)));
  auto tested = testsOf("Troubleshooting");
  // Tested in tests/platform/wayland, in GnomeTest.cpp and KWinHotKeysTest.cpp, with doubles.
  tested.insert(
      {"EverythingIsRefusedUnderGNOMEAndStandardErrorSaysDoesNotKnowThisProgram",
       "EverythingIsRefusedUnderGNOMEAndStandardErrorSaysFromVersion48On",
       "EverythingIsRefusedUnderPlasmaAndStandardErrorSaysThePermissionForSeldialToType"});
  EXPECT_EQ(symptoms(), tested);
}

}  // namespace
}  // namespace seldial::tests
