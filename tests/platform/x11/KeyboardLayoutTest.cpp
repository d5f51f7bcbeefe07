// Hot keys and layouts: other layouts, and layouts that change under a registered hot key.
#include "tests/platform/x11/X11Test.h"

namespace seldial::platform::x11 {
namespace {

using KeyboardLayout = X11Test;

TEST_F(KeyboardLayout, FiresWhileALockOnAnotherModifierIsOn) {
  // Scroll Lock with its own modifier is not one of the usual four variants.
  useLayout("scroll-lock.xkb");
  ASSERT_TRUE(port.registerHotKey(kVK_ANSI_D, kControlAlt));
  keyboard.tap(kKeyScrollLock);
  ASSERT_NE(keyboard.modifiers(), 0U);
  useHotKey();
  port.waitForReleases(1);
  keyboard.tap(kKeyScrollLock);
}

TEST_F(KeyboardLayout, FiresUnderAnyLayout) {
  for (const char* const layout : {"de", "fr", "ru", "us(dvorak)"}) {
    ASSERT_EQ(server.run({"setxkbmap", layout}), 0);
    const auto ref = port.registerHotKey(kVK_ANSI_D, kControlAlt);
    ASSERT_TRUE(ref) << layout;
    const auto before = port.releases().size();
    useHotKey();
    port.waitForReleases(before + 1);
    port.unregisterHotKey(*ref);
  }
}

TEST_F(KeyboardLayout, FiresUnderTheSecondLayoutOfTwo) {
  ASSERT_EQ(server.run({"setxkbmap", "-option", "grp:menu_toggle", "us,ru"}), 0);
  ASSERT_TRUE(port.registerHotKey(kVK_ANSI_D, kControlAlt));
  keyboard.tap(kKeyMenu);
  ASSERT_EQ(keyboard.group(), 1U);
  useHotKey();
  port.waitForReleases(1);
}

TEST_F(KeyboardLayout, StaysRegisteredWhenTheLayoutChanges) {
  ASSERT_TRUE(port.registerHotKey(kVK_ANSI_D, kControlAlt));
  for (const std::string layout : {"us(dvorak)", "ru", "us"}) {
    ASSERT_EQ(server.run({"setxkbmap", layout}), 0);
    const auto before = port.releases().size();
    useHotKey();
    port.waitForReleases(before + 1);
  }
}

TEST_F(KeyboardLayout, FollowsAModifierThatMovesToAnotherBit) {
  ASSERT_TRUE(port.registerHotKey(kVK_ANSI_D, kHotKeyCommand));
  useLayout("super-on-mod3.xkb");
  port.settle();
  keyboard.press({kKeyLeftSuper, kKeyD});
  keyboard.release({kKeyD, kKeyLeftSuper});
  port.waitForReleases(1);
}

TEST_F(KeyboardLayout, FollowsTheKeyboardThatTheUserTypesOn) {
  ASSERT_TRUE(port.registerHotKey(kVK_ANSI_D, kHotKeyCommand));
  useLayout("super-on-mod3.xkb", keyboard.physicalDevice());
  keyboard.press(kKeyLeftSuper);
  port.settle();
  keyboard.tap(kKeyD);
  port.waitForReleases(1);
  keyboard.release(kKeyLeftSuper);
}

TEST_F(KeyboardLayout, ReturnsWithTheModifierThatALayoutLacked) {
  ASSERT_TRUE(port.registerHotKey(kVK_ANSI_D, kHotKeyCommand));
  ::testing::internal::CaptureStderr();
  useLayout("no-super.xkb");
  port.settle();
  port.settle();
  EXPECT_NE(::testing::internal::GetCapturedStderr(), "");
  ASSERT_EQ(server.run({"setxkbmap", "us"}), 0);
  port.settle();
  keyboard.press({kKeyLeftSuper, kKeyD});
  keyboard.release({kKeyD, kKeyLeftSuper});
  port.waitForReleases(1);
}

}  // namespace
}  // namespace seldial::platform::x11
