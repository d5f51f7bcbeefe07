// The page docs/integrating.md and the tests of this folder agree.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>

namespace seldial::tests {
namespace {

/// "Seldial creates no folders." as "SeldialCreatesNoFolders".
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

std::set<std::string> statementsOfPage() {
  std::ifstream file(SELDIAL_PAGE);
  std::string page(std::istreambuf_iterator<char>(file), {});
  page.erase(0, page.find("\n## "));  // the introduction explains the bold type
  static const std::regex bold(R"(\*\*([^*]+)\*\*)");
  std::set<std::string> names;
  for (std::sregex_iterator match(page.begin(), page.end(), bold), end; match != end; ++match) {
    names.insert(testNameOf((*match)[1]));
  }
  return names;
}

std::set<std::string> tests() {
  std::set<std::string> names;
  const auto& all = *testing::UnitTest::GetInstance();
  for (int suite = 0; suite < all.total_test_suite_count(); ++suite) {
    const auto& tests = *all.GetTestSuite(suite);
    if (!std::string(tests.name()).starts_with("Integrating")) continue;
    for (int test = 0; test < tests.total_test_count(); ++test) {
      names.insert(tests.GetTestInfo(test)->name());
    }
  }
  return names;
}

TEST(IntegrationPage, EachStatementIsATestAndEachTestAStatement) {
  EXPECT_THAT(statementsOfPage(), testing::SizeIs(testing::Gt(20)));
  EXPECT_EQ(statementsOfPage(), tests());
}

}  // namespace
}  // namespace seldial::tests
