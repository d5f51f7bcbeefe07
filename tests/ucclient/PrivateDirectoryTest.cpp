#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "tests/support/TemporaryDirectory.h"
#include "ucclient/PrivateDirectory.h"

namespace seldial {
namespace {

bool exists(const std::string& path) {
  return access(path.c_str(), F_OK) == 0;
}

TEST(PrivateDirectory, ItsOwnerAloneMayEnter) {
  const tests::TemporaryDirectory parent;
  const auto directory = PrivateDirectory::makeUnder({parent.path("")});
  ASSERT_TRUE(directory);
  struct stat status {};
  ASSERT_EQ(stat(directory->path().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0700U);
}

TEST(PrivateDirectory, GoesWithTheFilesThatWereNamedInIt) {
  const tests::TemporaryDirectory parent;
  auto directory = PrivateDirectory::makeUnder({parent.path("")});
  const std::string file = directory->file("dialer");
  (void)directory->file("never made");
  std::ofstream(file) << "x";
  ASSERT_TRUE(exists(file));
  const std::string path = directory->path();
  directory.reset();
  EXPECT_FALSE(exists(path));
}

TEST(PrivateDirectory, TheFirstParentThatWorksIsTaken) {
  const tests::TemporaryDirectory parent;
  const auto directory =
      PrivateDirectory::makeUnder({parent.path("missing"), "/proc", parent.path("")});
  ASSERT_TRUE(directory);
  EXPECT_EQ(directory->path().rfind(parent.path("seldial-uc-"), 0), 0U) << directory->path();
}

TEST(PrivateDirectory, ItsPathIsStandardisedWhateverTheParents) {
  const tests::TemporaryDirectory parent;
  const auto directory = PrivateDirectory::makeUnder({parent.path("") + "/.././" + "//"});
  ASSERT_TRUE(directory);
  EXPECT_EQ(directory->path().rfind("/tmp/seldial-uc-", 0), 0U) << directory->path();
}

TEST(PrivateDirectory, AParentTooLongForASocketsPathIsPassedOver) {
  const tests::TemporaryDirectory parent;
  const std::string deep = parent.path(std::string(60, 'x'));  // with room for itself alone
  ASSERT_EQ(mkdir(deep.c_str(), 0700), 0);
  EXPECT_EQ(PrivateDirectory::makeUnder({deep}), nullptr);
  const auto directory = PrivateDirectory::makeUnder({deep, parent.path("")});
  ASSERT_TRUE(directory);
  EXPECT_LE(directory->file("dialer").size(), PrivateDirectory::kLongestPath);
}

TEST(PrivateDirectory, NoParentNoDirectory) {
  EXPECT_EQ(PrivateDirectory::makeUnder({}), nullptr);
}

}  // namespace
}  // namespace seldial
