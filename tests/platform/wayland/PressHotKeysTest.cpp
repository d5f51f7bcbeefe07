// A compositor without hot keys for programs: each connection to a socket is a use.
#include <gmock/gmock.h>

#include <filesystem>

#include "platform/System.h"
#include "tests/platform/wayland/WaylandPort.h"
#include "tests/support/Sockets.h"

namespace seldial::platform::wayland {
namespace {

using testing::ElementsAre;
using tests::Editor;
using tests::EditorKey;
using tests::EditorSettings;
using tests::Peer;

/// sway without its IPC socket.
class PressHotKeysTest : public testing::Test {
 protected:
  /// Connects like "seldial-uc press"; false if nobody waits for it.
  static bool press() { return Peer::connectedTo(pressSocketPath()).connected(); }

  tests::Sway sway;
  tests::UserKeyboard keyboard{sway.display()};
  std::optional<WaylandPort> port{std::in_place, sway, tests::Sway::Ipc::kHidden};
};

TEST_F(PressHotKeysTest, EachPressIsAUseOfTheLastHotKey) {
  ASSERT_TRUE(port->registerHotKey(kVK_ANSI_D, kControlAlt, 1));
  EXPECT_TRUE(press());
  port->waitForReleases(1);
  ASSERT_TRUE(port->registerHotKey(kVK_F5, 0, 2));
  EXPECT_TRUE(press());
  EXPECT_TRUE(press());
  port->waitForReleases(3);
  EXPECT_THAT(port->releases(), ElementsAre(1, 2, 2));
}

TEST_F(PressHotKeysTest, NobodyWaitsWithoutAHotKey) {
  EXPECT_FALSE(press());
  const auto ref = port->registerHotKey(kVK_ANSI_D, kControlAlt);
  ASSERT_TRUE(ref);
  port->unregisterHotKey(*ref);
  EXPECT_FALSE(press());
}

TEST_F(PressHotKeysTest, ASecondProgramIsRefusedAndTheEndLeavesNothing) {
  std::optional<WaylandPort> other(std::in_place, sway, tests::Sway::Ipc::kHidden);
  ASSERT_TRUE(port->registerHotKey(kVK_ANSI_D, kControlAlt));
  EXPECT_FALSE(other->registerHotKey(kVK_ANSI_D, kControlAlt));
  port.reset();
  EXPECT_TRUE(other->registerHotKey(kVK_ANSI_D, kControlAlt));
  other.reset();
  EXPECT_TRUE(std::filesystem::is_empty(sharedRuntimeDirectory()));
}

TEST_F(PressHotKeysTest, TheSocketOfAKilledProgramIsReplaced) {
  std::filesystem::create_directory(sharedRuntimeDirectory());
  (void)Peer::listeningAt(pressSocketPath());  // leaves its file behind
  ASSERT_TRUE(port->registerHotKey(kVK_ANSI_D, kControlAlt));
  EXPECT_TRUE(press());
  port->waitForReleases(1);
}

TEST_F(PressHotKeysTest, APressCopiesTheSelection) {
  Editor editor(sway.display());
  ASSERT_TRUE(port->registerHotKey(kVK_ANSI_D, kControlAlt));
  port->dialOnRelease([&] { editor.waitForCopies(1); });
  EXPECT_TRUE(press());
  port->waitForDials(1);
  EXPECT_THAT(port->dialled(), ElementsAre("+31 20 123 4567"));
}

TEST_F(PressHotKeysTest, ATerminalIsKnownByTheListOfWindows) {
  const Editor behind(sway.display());
  EditorSettings terminal;
  terminal.applicationId = "foot";
  terminal.copyKey = KEY_COPY;
  Editor editor(sway.display(), terminal);
  ASSERT_TRUE(port->registerHotKey(kVK_ANSI_D, kControlAlt));
  port->dialOnRelease([&] { editor.waitForCopies(1); });
  EXPECT_TRUE(press());
  port->waitForDials(1);
  EXPECT_THAT(editor.keys(), ElementsAre(EditorKey{KEY_COPY, 0}));
}

}  // namespace
}  // namespace seldial::platform::wayland
