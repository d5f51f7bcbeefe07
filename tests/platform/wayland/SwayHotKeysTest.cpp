// Hot keys under sway: when they fire, which are refused, and cleanup at the end of the program.
#include <gmock/gmock.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <future>

#include "tests/platform/wayland/WaylandPort.h"
#include "tests/support/Waiting.h"

namespace seldial::platform::wayland {
namespace {

using testing::ElementsAre;
using tests::Editor;
using tests::EditorKey;

/// The key event of the window when the combination is not a hot key.
const EditorKey kFreeD{KEY_D, tests::kEditorControl | 8};

class SwayHotKeysTest : public WaylandTest {
 protected:
  /// Types a key that is not bound and waits for it, so that all keys typed before have arrived.
  void settle(const Editor& editor) {
    keyboard.tap(KEY_ENTER);
    editor.waitForKey(KEY_ENTER, ++settled_);
  }

 private:
  std::size_t settled_ = 0;
};

TEST_F(SwayHotKeysTest, AReleaseIsReportedOnceAndTheKeyReachesNoWindow) {
  const Editor editor(sway.display());
  ASSERT_TRUE(port->registerHotKey(kVK_ANSI_D, kControlAlt, 7));
  useHotKey();
  port->waitForReleases(1);
  settle(editor);
  EXPECT_THAT(port->releases(), ElementsAre(7));
  EXPECT_THAT(editor.keys(), ElementsAre(EditorKey{KEY_ENTER, 0}));
}

TEST_F(SwayHotKeysTest, EachHotKeyFiresForItsOwnKeys) {
  ASSERT_TRUE(port->registerHotKey(kVK_ANSI_D, kControlAlt, 1));
  ASSERT_TRUE(port->registerHotKey(kVK_F5, 0, 2));
  ASSERT_TRUE(port->registerHotKey(kVK_ANSI_2, kHotKeyCommand | kHotKeyShift, 3));
  keyboard.use({KEY_LEFTMETA, KEY_LEFTSHIFT}, KEY_2);
  keyboard.tap(KEY_F5);
  useHotKey();
  keyboard.use({KEY_LEFTCTRL, KEY_LEFTALT, KEY_LEFTSHIFT}, KEY_D);
  keyboard.tap(KEY_F5);
  port->waitForReleases(4);
  EXPECT_THAT(port->releases(), ElementsAre(3, 2, 1, 2));
}

TEST_F(SwayHotKeysTest, LocksDoNotMatter) {
  ASSERT_TRUE(port->registerHotKey(kVK_ANSI_D, kControlAlt));
  keyboard.tap(KEY_CAPSLOCK);
  keyboard.tap(KEY_NUMLOCK);
  useHotKey();
  port->waitForReleases(1);
}

TEST_F(SwayHotKeysTest, WhatCannotBeAHotKeyIsRefused) {
  for (const std::uint32_t key : {kVK_Control, kVK_RightShift, kVK_CapsLock, kVK_Function}) {
    EXPECT_FALSE(port->registerHotKey(key, kHotKeyOption)) << key;
  }
  EXPECT_FALSE(port->registerHotKey(127, 0));
  EXPECT_FALSE(port->registerHotKey(kVK_Help, kHotKeyControl)) << "the copy keystroke";
  EXPECT_TRUE(port->registerHotKey(kVK_Help, kHotKeyOption));
}

TEST_F(SwayHotKeysTest, AnUnregisteredCombinationReachesTheWindowAgain) {
  const Editor editor(sway.display());
  const auto ref = port->registerHotKey(kVK_ANSI_D, kControlAlt);
  ASSERT_TRUE(ref);
  port->unregisterHotKey(*ref);
  useHotKey();
  settle(editor);
  EXPECT_THAT(editor.keys(), ElementsAre(kFreeD, EditorKey{KEY_ENTER, 0}));
  EXPECT_THAT(port->releases(), ElementsAre());
}

TEST_F(SwayHotKeysTest, TheEndOfTheProgramGivesTheCombinationBack) {
  const Editor editor(sway.display());
  ASSERT_TRUE(port->registerHotKey(kVK_ANSI_D, kControlAlt));
  port.reset();
  useHotKey();
  settle(editor);
  EXPECT_THAT(editor.keys(), ElementsAre(kFreeD, EditorKey{KEY_ENTER, 0}));
}

TEST_F(SwayHotKeysTest, ASecondProgramIsRefusedUntilTheFirstUnregisters) {
  WaylandPort other(sway);
  const auto ref = port->registerHotKey(kVK_ANSI_D, kControlAlt);
  ASSERT_TRUE(ref);
  EXPECT_FALSE(other.registerHotKey(kVK_ANSI_D, kControlAlt));
  EXPECT_TRUE(other.registerHotKey(kVK_ANSI_F, kControlAlt));
  useHotKey();
  port->waitForReleases(1);
  port->unregisterHotKey(*ref);
  EXPECT_TRUE(other.registerHotKey(kVK_ANSI_D, kControlAlt));
}

TEST_F(SwayHotKeysTest, BindingsOfAKilledProgramAreRemovedAtTheNextStart) {
  const Editor editor(sway.display());
  ASSERT_TRUE(sway.run("bindcode Ctrl+Mod1+40 nop; bindcode --release Ctrl+Mod1+40 nop"));
  const std::string folder = std::filesystem::path(sway.ipc()).parent_path() / "seldial";
  std::filesystem::create_directory(folder);
  std::ofstream(folder + "/sway.sock Ctrl+Mod1+40");
  const WaylandPort next(sway);
  useHotKey();
  settle(editor);
  EXPECT_THAT(editor.keys(), ElementsAre(kFreeD, EditorKey{KEY_ENTER, 0}));
}

TEST_F(SwayHotKeysTest, ItWorksAfterTheConfigurationIsReadAgain) {
  const Editor editor(sway.display());
  ASSERT_TRUE(port->registerHotKey(kVK_ANSI_D, kControlAlt));
  useHotKey();
  port->waitForReleases(1);
  sway.reload();
  // The bindings are restored some time after the reload; until then the keys reach the window.
  ASSERT_TRUE(tests::eventually([&] {
    useHotKey();
    settle(editor);
    return port->releases().size() > 1;
  }));
}

TEST_F(SwayHotKeysTest, TheConfigurationsOwnCombinationIsRefused) {
  sway.reload("bindsym Mod4+Shift+d exec true\n");
  EXPECT_FALSE(port->registerHotKey(kVK_ANSI_D, kHotKeyCommand | kHotKeyShift));
  EXPECT_TRUE(port->registerHotKey(kVK_ANSI_D, kHotKeyCommand));
}

TEST_F(SwayHotKeysTest, ItWorksInEveryBindingModeAndLeavesNothingInThem) {
  sway.reload("mode \"in or out\" {\n bindsym Mod4+x mode default\n}\n");
  const Editor editor(sway.display());
  ASSERT_TRUE(port->registerHotKey(kVK_ANSI_D, kControlAlt));
  ASSERT_TRUE(sway.run("mode \"in or out\""));
  ASSERT_TRUE(tests::eventually([&] {
    useHotKey();
    settle(editor);
    return !port->releases().empty();
  }));
  const auto before = editor.keys().size();
  port.reset();
  useHotKey();
  settle(editor);
  ASSERT_TRUE(sway.run("mode default"));
  useHotKey();
  settle(editor);
  const auto keys = editor.keys();
  EXPECT_THAT(std::vector(keys.begin() + static_cast<std::ptrdiff_t>(before), keys.end()),
              ElementsAre(kFreeD, EditorKey{KEY_ENTER, 0}, kFreeD, EditorKey{KEY_ENTER, 0}));
}

// sway crashes when the binding of a key that is down is removed.
TEST_F(SwayHotKeysTest, ACombinationWhoseKeysAreDownIsGivenBackOnceTheyAreUp) {
  const auto ref = port->registerHotKey(kVK_ANSI_D, kControlAlt, 7);
  ASSERT_TRUE(ref);
  keyboard.press(kControlAltKeys);
  keyboard.press({KEY_D});
  std::promise<void> begun;
  const auto given = std::async(std::launch::async, [&] {
    port->call([&] {
      begun.set_value();
      port->hotKeys().unregisterHotKey(*ref);
    });
  });
  begun.get_future().wait();
  for (int i = 0; i < 5; ++i) ASSERT_TRUE(sway.run("nop"));  // the bindings could be gone by now
  keyboard.release({KEY_D});
  keyboard.release(kControlAltKeys);
  given.wait();
  port->waitForReleases(1);
  EXPECT_THAT(port->releases(), ElementsAre(7));
  EXPECT_TRUE(sway.run("nop"));
  EXPECT_TRUE(port->registerHotKey(kVK_ANSI_D, kControlAlt, 8));
  useHotKey();
  port->waitForReleases(2);
}

TEST_F(SwayHotKeysTest, TheLossOfTheCompositorIsReportedOnce) {
  sway.kill();
  port->waitForLoss();
  EXPECT_FALSE(port->registerHotKey(kVK_ANSI_D, kControlAlt));
  EXPECT_EQ(port->connectionsLost(), 1);
}

}  // namespace
}  // namespace seldial::platform::wayland
