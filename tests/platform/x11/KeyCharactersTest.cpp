// The characters of keys in the layout of a real X server.
#include <gtest/gtest.h>

#include "hotkey/QKKeyStrings.h"
#include "platform/Keyboard.h"
#include "platform/VirtualKeys.h"
#include "tests/support/desktop/Keyboard.h"
#include "tests/support/desktop/KeymapRequests.h"
#include "tests/support/desktop/Keys.h"
#include "tests/support/desktop/XServer.h"

namespace seldial::platform::x11 {
namespace {

using namespace tests;  // NOLINT: the tests speak of the desktop's things by their short names

class KeyCharacters : public ::testing::Test {
 protected:
  KeyCharacters() { setenv("DISPLAY", server.display().c_str(), 1); }

  void use(const std::string& layouts) {
    ASSERT_EQ(server.run({"setxkbmap", "-option", "grp:menu_toggle", layouts}), 0);
  }
  /// The characters of the key; "-" if there are none.
  std::string at(std::uint16_t keyCode, std::uint32_t modifierKeyState = 0) {
    return layout->translate(keyCode, modifierKeyState).value_or("-");
  }

  XServer server;
  Keyboard keyboard{server.display()};
  std::shared_ptr<KeyboardLayout> layout = makeSystemKeyboardLayout();
};

TEST_F(KeyCharacters, OfTheUsLayout) {
  use("us");
  EXPECT_EQ(at(kVK_ANSI_A), "a");
  EXPECT_EQ(at(kVK_ANSI_Q), "q");
  EXPECT_EQ(at(kVK_ANSI_1), "1");
  EXPECT_EQ(at(kVK_ANSI_Semicolon), ";");
  EXPECT_EQ(at(kVK_ANSI_Grave), "`");
}

TEST_F(KeyCharacters, OfTheGermanLayout) {
  use("de");
  EXPECT_EQ(at(kVK_ANSI_Z), "y");
  EXPECT_EQ(at(kVK_ANSI_Semicolon), "ö");
  EXPECT_EQ(at(kVK_ANSI_KeypadDecimal), ",");
}

TEST_F(KeyCharacters, OfTheFrenchLayout) {
  use("fr");
  EXPECT_EQ(at(kVK_ANSI_A), "q");
  EXPECT_EQ(at(kVK_ANSI_Q), "a");
  EXPECT_EQ(at(kVK_ANSI_1), "&");
}

TEST_F(KeyCharacters, OfTheRussianLayout) {
  use("ru");
  EXPECT_EQ(at(kVK_ANSI_A), "ф");
  EXPECT_EQ(at(kVK_ANSI_Semicolon), "ж");
}

TEST_F(KeyCharacters, OfTheDvorakLayout) {
  use("us(dvorak)");
  EXPECT_EQ(at(kVK_ANSI_S), "o");
  EXPECT_EQ(at(kVK_ANSI_D), "e");
}

TEST_F(KeyCharacters, OfTheLayoutThatIsChosenAmongTwo) {
  use("us,ru");
  EXPECT_EQ(at(kVK_ANSI_A), "a");
  keyboard.tap(kKeyMenu);
  ASSERT_EQ(keyboard.group(), 1U);
  EXPECT_EQ(at(kVK_ANSI_A), "ф");
  EXPECT_EQ(at(kVK_ANSI_Keypad1), "1");
  keyboard.tap(kKeyMenu);
  ASSERT_EQ(keyboard.group(), 0U);
  EXPECT_EQ(at(kVK_ANSI_A), "a");
}

TEST_F(KeyCharacters, FollowAChangedLayout) {
  for (int round = 0; round < 3; ++round) {
    use("us");
    EXPECT_EQ(at(kVK_ANSI_A), "a");
    use("fr");
    EXPECT_EQ(at(kVK_ANSI_A), "q");
  }
}

TEST_F(KeyCharacters, OfADeadKeyAreNone) {
  use("de");
  EXPECT_EQ(at(kVK_ANSI_Grave), "-");
  use("fr");
  EXPECT_EQ(at(kVK_ANSI_LeftBracket), "-");
}

TEST_F(KeyCharacters, OfAKeyWithoutAnyAreNone) {
  EXPECT_EQ(at(kVK_Help), "-");
  EXPECT_EQ(at(kVK_ANSI_KeypadEnter), "-");
  EXPECT_EQ(at(kVK_ForwardDelete), "-");
  EXPECT_EQ(at(52), "-");
  EXPECT_EQ(at(63), "-");
  EXPECT_EQ(at(0xFFFF), "-");
}

TEST_F(KeyCharacters, AreThePlainOnesWhateverTheModifierBits) {
  for (std::uint32_t bits = 0; bits <= 0x1F00; bits += 0x100) EXPECT_EQ(at(kVK_ANSI_A, bits), "a");
}

TEST_F(KeyCharacters, AreThePlainOnesWhateverTheUserHolds) {
  keyboard.tap(kKeyCapsLock);
  keyboard.press({kKeyLeftShift, kKeyLeftControl});
  EXPECT_EQ(at(kVK_ANSI_A), "a");
  EXPECT_EQ(at(kVK_ANSI_1), "1");
  keyboard.release({kKeyLeftControl, kKeyLeftShift});
  keyboard.tap(kKeyCapsLock);
}

TEST_F(KeyCharacters, OfTheKeypadAreItsDigitsWithAndWithoutNumLock) {
  EXPECT_EQ(at(kVK_ANSI_Keypad1), "1");
  EXPECT_EQ(at(kVK_ANSI_KeypadPlus), "+");
  keyboard.tap(kKeyNumLock);
  EXPECT_EQ(at(kVK_ANSI_Keypad1), "1");
  keyboard.tap(kKeyNumLock);
}

TEST_F(KeyCharacters, KeyZeroWithControlAndCommandUnderFrenchIsShownAsQ) {
  use("fr");
  EXPECT_EQ(QKStringFromKeyCode(kVK_ANSI_A, kModifierFlagControl | kModifierFlagCommand), "⌃⌘q");
}

TEST_F(KeyCharacters, OfTheFortySixGlyphsAreAskedOfNoLayout) {
  for (const char* const layouts : {"us", "de", "fr", "ru", "us(dvorak)"}) {
    use(layouts);
    for (const auto& [keyCode, glyph] : QKKeyGlyphTable()) {
      // The left modifier keys are shown by their flags alone.
      const bool isLeft = keyCode == kVK_Command || keyCode == kVK_Shift || keyCode == kVK_Option ||
                          keyCode == kVK_Control;
      EXPECT_EQ(QKStringFromKeyCode(keyCode, 0), isLeft ? "" : glyph) << keyCode << " " << layouts;
    }
  }
}

TEST_F(KeyCharacters, TheKeymapIsRequestedAgainOnlyAfterAChange) {
  use("us,ru");
  EXPECT_EQ(at(kVK_ANSI_A), "a");
  const int requests = keymapRequests();
  EXPECT_EQ(at(kVK_ANSI_Q), "q");
  EXPECT_EQ(at(kVK_ANSI_Semicolon), ";");
  EXPECT_EQ(keymapRequests(), requests);
  use("de");
  EXPECT_EQ(at(kVK_ANSI_Z), "y");
  EXPECT_EQ(at(kVK_ANSI_Semicolon), "ö");
  EXPECT_EQ(keymapRequests(), requests + 1);
}

TEST_F(KeyCharacters, AreNothingWithoutAServerAndReturnWithTheNext) {
  EXPECT_EQ(at(kVK_ANSI_A), "a");
  server.kill();
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(at(kVK_ANSI_A), "-");
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
  const XServer next;
  setenv("DISPLAY", next.display().c_str(), 1);
  EXPECT_EQ(at(kVK_ANSI_A), "a");
}

TEST(KeyCharactersWithoutADisplay, AreNone) {
  unsetenv("DISPLAY");
  EXPECT_FALSE(makeSystemKeyboardLayout()->translate(kVK_ANSI_A, 0));
}

}  // namespace
}  // namespace seldial::platform::x11
