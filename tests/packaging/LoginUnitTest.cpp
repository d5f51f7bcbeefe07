// The unit that the packages install and the one that "seldial-uc enable" writes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "client/Configuration.h"

namespace seldial {
namespace {

std::vector<std::string> settings(std::istream& unit) {
  std::vector<std::string> lines;
  for (std::string line; std::getline(unit, line);) {
    if (!line.empty() && line.front() != '#') lines.push_back(line);
  }
  return lines;
}

TEST(LoginUnit, TheInstalledOneHasWhatEnableWritesAndTwoLinesMore) {
  std::ifstream installed(SELDIAL_LOGIN_UNIT);
  std::istringstream written(loginUnit(SELDIAL_BINDIR "/seldial-uc"));
  auto expected = settings(written);
  expected.emplace_back("Documentation=man:seldial-uc(1)");
  // Without the file, seldial-uc has nothing to dial with and would print each number.
  expected.emplace_back("ConditionPathExists=%E/seldial/seldial-uc.toml");
  EXPECT_THAT(settings(installed), testing::UnorderedElementsAreArray(expected));
}

}  // namespace
}  // namespace seldial
