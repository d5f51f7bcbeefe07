#include <gtest/gtest.h>

#include "platform/VirtualKeys.h"
#include "shortcut/Shortcut.h"
#include "tests/support/FakeKeyboardLayout.h"

namespace seldial {
namespace {

using namespace platform;  // NOLINT: modifier flags by their short names

class ShortcutWords : public testing::Test {
 protected:
  std::string wordsOf(std::uint16_t keyCode, std::uint64_t flags) {
    const auto hotKey = QKHotKey::hotKeyWithKeyCode(keyCode, flags, nullptr);
    return shortcutInWords(*hotKey, layout).toStdString();
  }

  tests::FakeKeyboardLayout layout;
};

TEST_F(ShortcutWords, NameTheModifiersInTheOrderOfTheGlyphsAndThenTheKey) {
  layout.keys[2] = "d";
  EXPECT_EQ(wordsOf(2, kModifierFlagCommand | kModifierFlagShift | kModifierFlagOption |
                           kModifierFlagControl | kModifierFlagCapsLock),
            "Ctrl + Alt + Shift + Super + D");
}

TEST_F(ShortcutWords, NameKeysThatAreShownAsAGlyph) {
  EXPECT_EQ(wordsOf(36, 0), "Return");
  EXPECT_EQ(wordsOf(126, kModifierFlagFunction), "Up");
  EXPECT_EQ(wordsOf(122, kModifierFlagFunction), "F1");
  EXPECT_EQ(wordsOf(90, kModifierFlagFunction), "F20");
}

TEST_F(ShortcutWords, TellTheKeypadApart) {
  layout.keys[82] = layout.keys[29] = "0";
  EXPECT_EQ(wordsOf(82, 0), "Keypad 0");
  EXPECT_EQ(wordsOf(29, 0), "0");
  EXPECT_EQ(wordsOf(79, 0), "F18");
}

TEST_F(ShortcutWords, OfModifierKeysAloneAreTheModifiers) {
  EXPECT_EQ(wordsOf(59, kModifierFlagControl), "Ctrl");
  EXPECT_EQ(wordsOf(62, kModifierFlagControl | kModifierFlagShift), "Ctrl + Shift");
  EXPECT_EQ(wordsOf(57, kModifierFlagControl), "Ctrl + Caps Lock");
}

TEST_F(ShortcutWords, NameKeysThatHaveNoGlyph) {
  EXPECT_EQ(wordsOf(kVK_Help, kModifierFlagCommand), "Super + Insert");
  EXPECT_EQ(wordsOf(kVK_ContextualMenu, kModifierFlagCommand), "Super + Menu");
  EXPECT_EQ(wordsOf(kVK_ANSI_KeypadEnter, kModifierFlagCommand), "Super + Enter");
}

TEST_F(ShortcutWords, NumberAKeyWithoutCharacters) {
  EXPECT_EQ(wordsOf(10, kModifierFlagControl), "Ctrl + key 10");
}

TEST_F(ShortcutWords, AHotKeyIsTheRecordWithoutOtherFlags) {
  for (const std::uint64_t flag :
       {kModifierFlagControl, kModifierFlagOption, kModifierFlagShift, kModifierFlagCommand}) {
    const auto record = QKHotKey::hotKeyWithKeyCode(2, flag | kModifierFlagCapsLock, nullptr);
    EXPECT_EQ(hotKeyOf(*record), (HotKey{2, flag})) << "of the four modifiers alone";
  }
}

}  // namespace
}  // namespace seldial
