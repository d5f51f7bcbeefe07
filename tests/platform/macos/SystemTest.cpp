// The small system services of macOS, and the start through a symbolic link.
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>

#include "platform/System.h"
#include "platform/macos/Desktop.h"
#include "tests/platform/macos/AppleTest.h"
#include "tests/support/TemporaryDirectory.h"

namespace seldial::platform {
namespace {

using tests::apple;

TEST(MacSystem, RandomBytesDifferEachTime) {
  std::array<std::uint64_t, 2> first{};
  std::array<std::uint64_t, 2> second{};
  EXPECT_TRUE(fillWithRandom(first.data(), sizeof first));
  EXPECT_TRUE(fillWithRandom(second.data(), sizeof second));
  EXPECT_NE(first, second);
}

TEST(MacSystem, ErrorTextIsTheSystemsAlsoForUnknownNumbers) {
  EXPECT_EQ(errorText(ENOENT), "No such file or directory");
  EXPECT_EQ(errorText(12345), "Unknown error 12345");
}

/// A process that was started through `link`, a link to the shell.
struct MacExecutable : tests::AppleTest {
  MacExecutable() {
    EXPECT_EQ(symlink("/bin/sh", link.c_str()), 0);
    apple().executable = link;
  }

  static std::string realPath(const std::string& path) {
    std::array<char, PATH_MAX> real{};
    return realpath(path.c_str(), real.data());
  }

  /// Acts as a process that was started as `executable`. If it restarts, the shell runs a script;
  /// otherwise it exits with status 1.
  [[noreturn]] static void startAs(const std::string& executable) {
    apple().executable = executable;
    std::string arguments[] = {"as-given", "-c", "echo \"started $0\" >&2; exit 7", "first"};
    char* argv[] = {arguments[0].data(), arguments[1].data(), arguments[2].data(),
                    arguments[3].data(), nullptr};
    macos::restartUnderRealPath(argv);
    std::_Exit(1);
  }

  const tests::TemporaryDirectory directory;
  const std::string link = directory.path("link");
};

TEST_F(MacExecutable, PathHasItsLinksResolved) {
  EXPECT_EQ(executablePath(), realPath("/bin/sh"));
}

TEST_F(MacExecutable, PathIsEmptyWhenTheSystemDoesNotTellIt) {
  apple().executable = std::string(PATH_MAX, 'x');
  EXPECT_EQ(executablePath(), "");
  apple().executable = directory.path("gone");
  EXPECT_EQ(executablePath(), "");
}

TEST_F(MacExecutable, ThatIsALinkIsRestartedUnderItsRealPathWithItsArguments) {
  EXPECT_EXIT(startAs(link), testing::ExitedWithCode(7), "^started first\n$");
}

TEST_F(MacExecutable, ThatIsNotALinkIsNotRestarted) {
  EXPECT_EXIT(startAs(realPath("/bin/sh")), testing::ExitedWithCode(1), "^$");
}

TEST_F(MacExecutable, ThatCannotBeRestartedContinuesAndSaysWhy) {
  const std::string toFolder = directory.path("toFolder");
  ASSERT_EQ(symlink(directory.path("").c_str(), toFolder.c_str()), 0);
  EXPECT_EXIT(startAs(toFolder), testing::ExitedWithCode(1), "Permission denied\n$");
}

TEST_F(MacExecutable, OfAnUnknownPathIsNotRestarted) {
  EXPECT_EXIT(startAs(directory.path("gone")), testing::ExitedWithCode(1), "^$");
}

}  // namespace
}  // namespace seldial::platform
