// Tests of the desktop doubles on which the other tests rely.
#include <gtest/gtest.h>

#include "tests/support/desktop/Keyboard.h"
#include "tests/support/desktop/Keys.h"
#include "tests/support/desktop/XClient.h"
#include "tests/support/desktop/XServer.h"

namespace seldial::tests {
namespace {

using KeySet = std::set<std::uint8_t>;

TEST(DesktopSupport, TwoServersHaveDifferentDisplays) {
  const XServer first;
  const XServer second;
  EXPECT_NE(first.display(), second.display());
}

TEST(DesktopSupport, AMissingProgramIsASetUpErrorWithAHint) {
  try {
    const ChildProcess missing({"no-such-program-here"}, {}, "install it");
    FAIL() << "started";
  } catch (const std::runtime_error& error) {
    EXPECT_NE(std::string(error.what()).find("install it"), std::string::npos) << error.what();
  }
}

TEST(DesktopSupport, AKeyIsPressedOnThePhysicalKeyboardAlone) {
  const XServer server;
  Keyboard keyboard(server.display());
  keyboard.press(kKeyLeftControl);
  EXPECT_EQ(keyboard.physicallyDown(), KeySet{kKeyLeftControl});
  EXPECT_EQ(keyboard.typedDown(), KeySet{});
  EXPECT_EQ(keyboard.modifiers(), kStateControl);
  keyboard.release(kKeyLeftControl);
  EXPECT_EQ(keyboard.down(), KeySet{});
}

TEST(DesktopSupport, TheFocusedWindowRecordsWhatIsTyped) {
  const XServer server;
  Keyboard keyboard(server.display());
  const XClient client(server.display());
  keyboard.press({kKeyLeftShift, kKeyA});
  keyboard.release({kKeyA, kKeyLeftShift});
  client.waitForRelease(kKeyLeftShift);
  ASSERT_EQ(client.keys().size(), 4U);
  EXPECT_EQ(client.keys()[1].state, kStateShift);
}

TEST(DesktopSupport, ControlInsertCopiesAndOtherChordsDoNot) {
  const XServer server;
  Keyboard keyboard(server.display());
  const XClient client(server.display());
  keyboard.press({kKeyLeftAlt, kKeyLeftControl, kKeyInsert});
  keyboard.release({kKeyInsert, kKeyLeftAlt});
  client.waitForRelease(kKeyLeftAlt);
  EXPECT_EQ(client.copies(), 0);
  keyboard.tap(kKeyInsert);
  keyboard.release(kKeyLeftControl);
  client.waitForRelease(kKeyLeftControl);
  EXPECT_EQ(client.copies(), 1);
}

TEST(DesktopSupport, AProgramOnTheServerRunsToItsEnd) {
  const XServer server;
  EXPECT_EQ(server.run({"setxkbmap", "de"}), 0);
}

}  // namespace
}  // namespace seldial::tests
