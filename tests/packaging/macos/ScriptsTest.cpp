// The scripts for a Mac, run here with stand-ins for what only a Mac has.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "tests/support/TemporaryDirectory.h"

namespace seldial {
namespace {

using testing::HasSubstr;

struct Outcome {
  int status = -1;
  std::string output;  ///< standard output and standard error
};

/// Programs of the test's own, found before the system's.
class MacScripts : public testing::Test {
 protected:
  MacScripts() {
    for (const char* const tool : {"uname", "xcode-select", "cmake", "ninja", "c++", "open"}) {
      program(tool, "exit 0");
    }
    program("uname", "echo Darwin");
  }

  void program(const std::string& name, const std::string& script) const {
    const std::string path = directory_.path(name);
    std::ofstream(path) << "#!/bin/bash\n" << script << '\n';
    chmod(path.c_str(), 0700);
  }

  [[nodiscard]] Outcome run(const std::string& command) const {
    const std::string line = "PATH=" + directory_.path("") + ":$PATH; " + command + " 2>&1";
    FILE* const pipe = popen(line.c_str(), "r");
    Outcome outcome;
    std::array<char, 256> buffer{};
    while (const auto count = fread(buffer.data(), 1, buffer.size(), pipe)) {
      outcome.output.append(buffer.data(), count);
    }
    outcome.status = WEXITSTATUS(pclose(pipe));
    return outcome;
  }

  const tests::TemporaryDirectory directory_;
};

/// A copy of the scripts in a tree where nothing was built yet. The stand-in of cmake builds a
/// client that says how it was started.
class RunOnAMac : public MacScripts {
 protected:
  RunOnAMac() {
    std::filesystem::create_directories(tree_ + "/scripts");
    for (const char* const script : {"/run", "/run-macos"}) {
      std::filesystem::copy(SELDIAL_SCRIPTS + std::string(script), tree_ + "/scripts");
    }
    program("cmake",
            "[[ $1 == --build ]] || exit 0\n"
            "mkdir -p build/macos/ucclient\n"
            "printf '#!/bin/sh\\necho client \"$@\"\\n' >build/macos/ucclient/seldial-uc\n"
            "chmod +x build/macos/ucclient/seldial-uc");
    program("open", "echo open \"$@\"");
  }

  const std::string tree_ = directory_.path("tree");
};

TEST_F(RunOnAMac, BuildsAndDialsOnTheUsersDesktop) {
  const auto outcome = run(tree_ + "/scripts/run --hotkey cmd+f5");
  EXPECT_THAT(outcome.output, HasSubstr("Privacy & Security > Accessibility"));
  EXPECT_THAT(outcome.output, HasSubstr("\nclient --hotkey cmd+f5 --delay 500\n"));
  EXPECT_EQ(outcome.status, 0);
}

TEST_F(RunOnAMac, TheDemoOpensATextAndShowsTheConversation) {
  const auto outcome = run(tree_ + "/scripts/run --demo --delay 50");
  EXPECT_THAT(outcome.output, HasSubstr("open -e build/macos/A-letter.txt\n"));
  EXPECT_THAT(outcome.output,
              HasSubstr("\nclient --hotkey ctrl+alt+d --delay 50 --conversation\n"));
  EXPECT_EQ(outcome.status, 0);
}

TEST_F(RunOnAMac, WithoutTheCommandLineToolsItSaysHowToGetThem) {
  program("xcode-select", "exit 2");
  const auto outcome = run(tree_ + "/scripts/run");
  EXPECT_THAT(outcome.output, HasSubstr("xcode-select --install"));
  EXPECT_EQ(outcome.status, 1);
}

TEST_F(RunOnAMac, WithoutALibraryItSaysWhatToInstall) {
  program("c++", "exit 1");
  const auto outcome = run(tree_ + "/scripts/run");
  EXPECT_THAT(outcome.output, HasSubstr("brew install nlohmann-json\n"));
  EXPECT_EQ(outcome.status, 1);
}

const std::string kPackage = SELDIAL_PACKAGING "/package";

TEST_F(MacScripts, PackagingNeedsMacOS) {
  program("uname", "echo Linux");
  const auto outcome = run(kPackage + " --identity A --keychain-profile B");
  EXPECT_THAT(outcome.output, HasSubstr("package: this needs macOS"));
  EXPECT_EQ(outcome.status, 1);
}

TEST_F(MacScripts, PackagingNeedsAnIdentityAndAProfile) {
  EXPECT_THAT(run(kPackage).output, HasSubstr("package: --identity is missing"));
  EXPECT_THAT(run(kPackage + " --identity A").output,
              HasSubstr("package: --keychain-profile is missing"));
}

TEST_F(MacScripts, PackagingNeedsTheToolsOfXcode) {
  program("xcrun", "exit 72");
  const auto outcome = run(kPackage + " --identity A --keychain-profile B");
  EXPECT_EQ(outcome.output, "package: there is no notarytool: install Xcode 13 or newer\n");
  EXPECT_EQ(outcome.status, 1);
}

TEST_F(MacScripts, PackagingNeedsTheIdentityInTheKeychain) {
  program("xcrun", "exit 0");
  program("security", "echo '1) 0123 \"Developer ID Application: Somebody else\"'");
  const auto outcome = run(kPackage + " --identity A --keychain-profile B");
  EXPECT_THAT(outcome.output, HasSubstr("the keychain has no valid identity \"A\""));
  EXPECT_EQ(outcome.status, 1);
}

TEST_F(MacScripts, PackagingNeedsAnAccountThatWorks) {
  program("xcrun", "[[ $1 == --find ]]");
  program("security", "echo '1) 0123 \"A\"'");
  const auto outcome = run(kPackage + " --identity A --keychain-profile B");
  EXPECT_THAT(outcome.output, HasSubstr("the profile \"B\" does not work"));
  EXPECT_EQ(outcome.status, 1);
}

TEST_F(MacScripts, AreWellFormed) {
  for (const std::string& script : {kPackage, std::string(SELDIAL_PACKAGING "/icon"),
                                    std::string(SELDIAL_SCRIPTS "/run-macos")}) {
    EXPECT_EQ(run("bash -n " + script).output, "");
  }
}

}  // namespace
}  // namespace seldial
