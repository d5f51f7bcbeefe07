#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "tests/support/TemporaryDirectory.h"
#include "ucclient/Paths.h"

namespace seldial {
namespace {

bool exists(const std::string& path) {
  return access(path.c_str(), F_OK) == 0;
}

void makeFile(const std::string& path, mode_t mode) {
  std::ofstream(path) << "#!/bin/sh\n";
  ASSERT_EQ(chmod(path.c_str(), mode), 0);
}

/// A build tree: the client's folder next to the application's.
class FindSeldial : public testing::Test {
 protected:
  FindSeldial() {
    mkdir(client_.c_str(), 0700);
    mkdir(app_.c_str(), 0700);
  }

  /// The path of the program in it.
  static std::string makeBundle(const std::string& place) {
    std::string path = place;
    for (const char* const folder : {"/Seldial.app", "/Contents", "/MacOS"}) {
      path += folder;
      EXPECT_EQ(mkdir(path.c_str(), 0700), 0);
    }
    makeFile(path + "/Seldial", 0700);
    return path + "/Seldial";
  }

  const tests::TemporaryDirectory directory_;
  const std::string client_ = directory_.path("ucclient");
  const std::string app_ = directory_.path("app");
};

TEST_F(FindSeldial, NextToTheClientFirst) {
  makeFile(client_ + "/seldial", 0700);
  makeFile(app_ + "/seldial", 0700);
  EXPECT_EQ(findSeldial(client_), client_ + "/seldial");
}

TEST_F(FindSeldial, ThenInTheBuildTree) {
  makeFile(app_ + "/seldial", 0700);
  EXPECT_EQ(findSeldial(client_), client_ + "/../app/seldial");
}

TEST_F(FindSeldial, InItsBundleNextToTheClient) {
  makeFile(app_ + "/seldial", 0700);
  const std::string program = makeBundle(client_);
  EXPECT_EQ(findSeldial(client_), program);
}

TEST_F(FindSeldial, InItsBundleInTheBuildTree) {
  makeBundle(app_);
  EXPECT_EQ(findSeldial(client_), client_ + "/../app/Seldial.app/Contents/MacOS/Seldial");
}

TEST_F(FindSeldial, InItsBundleAboveTheClientsFolder) {
  makeBundle(directory_.path("."));
  EXPECT_EQ(findSeldial(client_), client_ + "/../Seldial.app/Contents/MacOS/Seldial");
}

TEST_F(FindSeldial, OtherwiseInPath) {
  makeFile(app_ + "/seldial", 0600);            // no program
  mkdir((client_ + "/seldial").c_str(), 0700);  // no file
  EXPECT_EQ(findSeldial(client_), "seldial");
  EXPECT_EQ(findSeldial(""), "seldial");
}

TEST(OwnDirectory, HoldsTheRunningProgram) {
  struct stat status {};
  EXPECT_EQ(stat((executableDirectory() + "/ucclient_test").c_str(), &status), 0);
}

TEST(PrivateDirectory, OnlyItsOwnerHasAccess) {
  const tests::TemporaryDirectory parent;
  const auto directory = PrivateDirectory::createIn({parent.path("")});
  ASSERT_TRUE(directory);
  struct stat status {};
  ASSERT_EQ(stat(directory->path().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0700U);
}

TEST(PrivateDirectory, IsRemovedWithTheFilesNamedInIt) {
  const tests::TemporaryDirectory parent;
  auto directory = PrivateDirectory::createIn({parent.path("")});
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
      PrivateDirectory::createIn({parent.path("missing"), "/proc", parent.path("")});
  ASSERT_TRUE(directory);
  EXPECT_EQ(directory->path().rfind(parent.path("seldial-uc-"), 0), 0U) << directory->path();
}

TEST(PrivateDirectory, ItsPathIsStandardisedWhateverTheParents) {
  const tests::TemporaryDirectory parent;
  const auto directory = PrivateDirectory::createIn({parent.path("") + "/.././" + "//"});
  ASSERT_TRUE(directory);
  EXPECT_EQ(directory->path().rfind("/tmp/seldial-uc-", 0), 0U) << directory->path();
}

TEST(PrivateDirectory, AParentTooLongForASocketPathIsSkipped) {
  const tests::TemporaryDirectory parent;
  const std::string deep = parent.path(std::string(60, 'x'));  // with room for itself alone
  ASSERT_EQ(mkdir(deep.c_str(), 0700), 0);
  EXPECT_EQ(PrivateDirectory::createIn({deep}), nullptr);
  const auto directory = PrivateDirectory::createIn({deep, parent.path("")});
  ASSERT_TRUE(directory);
  EXPECT_LE(directory->file("dialer").size(), PrivateDirectory::kMaxPathLength);
}

TEST(PrivateDirectory, WithoutAParentThereIsNoDirectory) {
  EXPECT_EQ(PrivateDirectory::createIn({}), nullptr);
}

}  // namespace
}  // namespace seldial
