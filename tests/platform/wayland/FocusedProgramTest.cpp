// Finding the focused program under KWin.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "platform/wayland/FocusedProgram.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Sockets.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/Waiting.h"
#include "tests/support/wayland/PlasmaWindowList.h"

namespace seldial::platform::wayland {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::PlasmaWindowList;

class PlasmaWindowsTest : public testing::Test {
 protected:
  tests::TemporaryDirectory directory_;
  const std::string path_ = directory_.path("wayland");
  PlasmaWindowList list{path_};
  linux_port::MainLoop loop_;
  Display display_{dup(tests::Peer::connectedTo(path_).fd), loop_, [] {}};
  PlasmaWindows windows{display_};
};

TEST_F(PlasmaWindowsTest, NamesTheProgramOfTheActiveWindow) {
  list.open(1, "org.test.editor");
  list.open(2, "foot");
  list.activate(2);
  EXPECT_THAT(windows.activeApplications(), ElementsAre("foot", ""));
}

TEST_F(PlasmaWindowsTest, NamesItAgainAfterTheUserWentElsewhere) {
  list.open(1, "org.test.editor");
  list.open(2, "foot");
  list.activate(2);
  EXPECT_THAT(windows.activeApplications(), ElementsAre("foot", ""));
  list.activate(1);
  EXPECT_THAT(windows.activeApplications(), ElementsAre("org.test.editor", ""));
}

TEST_F(PlasmaWindowsTest, NamesNothingIfNoWindowIsActive) {
  list.open(1, "foot");
  EXPECT_THAT(windows.activeApplications(), IsEmpty());
}

TEST_F(PlasmaWindowsTest, ForgetsClosedWindows) {
  list.open(1, "foot");
  list.activate(1);
  list.close(1);
  EXPECT_THAT(windows.activeApplications(), IsEmpty());
  list.open(2, "konsole");
  list.activate(2);
  EXPECT_THAT(windows.activeApplications(), ElementsAre("konsole", ""));
}

TEST_F(PlasmaWindowsTest, NamesTheProcessToo) {
  const std::string path = directory_.path("xterm");
  std::filesystem::copy_file("/bin/sleep", path);
  const tests::ChildProcess sleeper({path, "1000"});
  ASSERT_TRUE(tests::eventually(
      [&] { return processName(static_cast<std::uint32_t>(sleeper.id())) == "xterm"; }));
  list.open(1, "debian-xterm", static_cast<std::uint32_t>(sleeper.id()));
  list.activate(1);
  EXPECT_THAT(windows.activeApplications(), ElementsAre("debian-xterm", "xterm"));
}

}  // namespace
}  // namespace seldial::platform::wayland
