#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>

#include "tests/support/TemporaryDirectory.h"
#include "ucclient/FindSeldial.h"

namespace seldial {
namespace {

void makeFile(const std::string& path, mode_t mode) {
  std::ofstream(path) << "#!/bin/sh\n";
  ASSERT_EQ(chmod(path.c_str(), mode), 0);
}

/// A build tree: the client's folder and the application's beside it.
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

TEST_F(FindSeldial, BesideTheClientFirst) {
  makeFile(client_ + "/seldial", 0700);
  makeFile(app_ + "/seldial", 0700);
  EXPECT_EQ(findSeldial(client_), client_ + "/seldial");
}

TEST_F(FindSeldial, ThenInTheBuildTree) {
  makeFile(app_ + "/seldial", 0700);
  EXPECT_EQ(findSeldial(client_), client_ + "/../app/seldial");
}

TEST_F(FindSeldial, InItsBundleBesideTheClient) {
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
  EXPECT_EQ(stat((ownDirectory() + "/ucclient_test").c_str(), &status), 0);
}

}  // namespace
}  // namespace seldial
