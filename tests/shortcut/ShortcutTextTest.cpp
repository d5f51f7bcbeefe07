#include <gtest/gtest.h>

#include "platform/VirtualKeys.h"
#include "shortcut/Shortcut.h"
#include "tests/support/FakeKeyboardLayout.h"

namespace seldial {
namespace {

using namespace platform;  // NOLINT: modifier flags by their short names

class ShortcutText : public testing::Test {
 protected:
  std::string textOf(std::uint16_t keyCode, std::uint64_t flags) {
    const auto hotKey = QKHotKey::hotKeyWithKeyCode(keyCode, flags, nullptr);
    return shortcutText(*hotKey, layout).toStdString();
  }

  tests::FakeKeyboardLayout layout;
};

TEST_F(ShortcutText, NameTheModifiersInTheOrderOfTheGlyphsAndThenTheKey) {
  layout.keys[2] = "d";
  EXPECT_EQ(textOf(2, kModifierFlagCommand | kModifierFlagShift | kModifierFlagOption |
                          kModifierFlagControl | kModifierFlagCapsLock),
            "Ctrl + Alt + Shift + Super + D");
}

TEST_F(ShortcutText, NameKeysThatAreShownAsAGlyph) {
  EXPECT_EQ(textOf(36, 0), "Return");
  EXPECT_EQ(textOf(126, kModifierFlagFunction), "Up");
  EXPECT_EQ(textOf(122, kModifierFlagFunction), "F1");
  EXPECT_EQ(textOf(90, kModifierFlagFunction), "F20");
}

TEST_F(ShortcutText, TellTheKeypadApart) {
  layout.keys[82] = layout.keys[29] = "0";
  EXPECT_EQ(textOf(82, 0), "Keypad 0");
  EXPECT_EQ(textOf(29, 0), "0");
  EXPECT_EQ(textOf(79, 0), "F18");
}

TEST_F(ShortcutText, OfModifierKeysAloneAreTheModifiers) {
  EXPECT_EQ(textOf(59, kModifierFlagControl), "Ctrl");
  EXPECT_EQ(textOf(62, kModifierFlagControl | kModifierFlagShift), "Ctrl + Shift");
  EXPECT_EQ(textOf(57, kModifierFlagControl), "Ctrl + Caps Lock");
}

TEST_F(ShortcutText, NameKeysThatHaveNoGlyph) {
  EXPECT_EQ(textOf(kVK_Help, kModifierFlagCommand), "Super + Insert");
  EXPECT_EQ(textOf(kVK_ContextualMenu, kModifierFlagCommand), "Super + Menu");
  EXPECT_EQ(textOf(kVK_ANSI_KeypadEnter, kModifierFlagCommand), "Super + Enter");
}

TEST_F(ShortcutText, NumberAKeyWithoutCharacters) {
  EXPECT_EQ(textOf(10, kModifierFlagControl), "Ctrl + key 10");
}

TEST_F(ShortcutText, AHotKeyIsTheRecordWithoutOtherFlags) {
  for (const std::uint64_t flag :
       {kModifierFlagControl, kModifierFlagOption, kModifierFlagShift, kModifierFlagCommand}) {
    const auto record = QKHotKey::hotKeyWithKeyCode(2, flag | kModifierFlagCapsLock, nullptr);
    EXPECT_EQ(hotKeyOf(*record), (HotKey{2, flag})) << "of the four modifiers alone";
  }
}

}  // namespace
}  // namespace seldial
