// What keys say in the layout of a real X server.
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

/// Virtual key codes, by what is printed on a US keyboard.
enum VirtualKey : std::uint16_t {
  kVirtualA = 0,
  kVirtualS = 1,
  kVirtualD = 2,
  kVirtualZ = 6,
  kVirtualQ = 12,
  kVirtual1 = 18,
  kVirtualLeftBracket = 33,
  kVirtualSemicolon = 41,
  kVirtualGrave = 50,
  kVirtualKeypadDecimal = 65,
  kVirtualKeypadPlus = 69,
  kVirtualKeypadEnter = 76,
  kVirtualKeypad1 = 83,
  kVirtualInsert = 114,
  kVirtualForwardDelete = 117,
};

class KeyCharacters : public ::testing::Test {
 protected:
  KeyCharacters() { setenv("DISPLAY", server.display().c_str(), 1); }

  void use(const std::string& layouts) {
    ASSERT_EQ(server.run({"setxkbmap", "-option", "grp:menu_toggle", layouts}), 0);
  }
  /// What the key says; "-" when it says nothing.
  std::string at(std::uint16_t keyCode, std::uint32_t modifierKeyState = 0) {
    return layout->translate(keyCode, modifierKeyState).value_or("-");
  }

  XServer server;
  Keyboard keyboard{server.display()};
  std::shared_ptr<KeyboardLayout> layout = makeSystemKeyboardLayout();
};

TEST_F(KeyCharacters, OfTheUsLayout) {
  use("us");
  EXPECT_EQ(at(kVirtualA), "a");
  EXPECT_EQ(at(kVirtualQ), "q");
  EXPECT_EQ(at(kVirtual1), "1");
  EXPECT_EQ(at(kVirtualSemicolon), ";");
  EXPECT_EQ(at(kVirtualGrave), "`");
}

TEST_F(KeyCharacters, OfTheGermanLayout) {
  use("de");
  EXPECT_EQ(at(kVirtualZ), "y");
  EXPECT_EQ(at(kVirtualSemicolon), "ö");
  EXPECT_EQ(at(kVirtualKeypadDecimal), ",");
}

TEST_F(KeyCharacters, OfTheFrenchLayout) {
  use("fr");
  EXPECT_EQ(at(kVirtualA), "q");
  EXPECT_EQ(at(kVirtualQ), "a");
  EXPECT_EQ(at(kVirtual1), "&");
}

TEST_F(KeyCharacters, OfTheRussianLayout) {
  use("ru");
  EXPECT_EQ(at(kVirtualA), "ф");
  EXPECT_EQ(at(kVirtualSemicolon), "ж");
}

TEST_F(KeyCharacters, OfTheDvorakLayout) {
  use("dvorak");
  EXPECT_EQ(at(kVirtualS), "o");
  EXPECT_EQ(at(kVirtualD), "e");
}

TEST_F(KeyCharacters, OfTheLayoutThatIsChosenAmongTwo) {
  use("us,ru");
  EXPECT_EQ(at(kVirtualA), "a");
  keyboard.tap(kKeyMenu);
  ASSERT_EQ(keyboard.group(), 1U);
  EXPECT_EQ(at(kVirtualA), "ф");
  EXPECT_EQ(at(kVirtualKeypad1), "1");
  keyboard.tap(kKeyMenu);
  ASSERT_EQ(keyboard.group(), 0U);
  EXPECT_EQ(at(kVirtualA), "a");
}

TEST_F(KeyCharacters, FollowAChangedLayout) {
  for (int round = 0; round < 3; ++round) {
    use("us");
    EXPECT_EQ(at(kVirtualA), "a");
    use("fr");
    EXPECT_EQ(at(kVirtualA), "q");
  }
}

TEST_F(KeyCharacters, OfADeadKeyAreNone) {
  use("de");
  EXPECT_EQ(at(kVirtualGrave), "-");
  use("fr");
  EXPECT_EQ(at(kVirtualLeftBracket), "-");
}

TEST_F(KeyCharacters, OfAKeyWithoutAnyAreNone) {
  EXPECT_EQ(at(kVirtualInsert), "-");
  EXPECT_EQ(at(kVirtualKeypadEnter), "-");
  EXPECT_EQ(at(kVirtualForwardDelete), "-");
  EXPECT_EQ(at(52), "-");
  EXPECT_EQ(at(63), "-");
  EXPECT_EQ(at(0xFFFF), "-");
}

TEST_F(KeyCharacters, AreThePlainOnesWhateverTheModifierBits) {
  for (std::uint32_t bits = 0; bits <= 0x1F00; bits += 0x100) EXPECT_EQ(at(kVirtualA, bits), "a");
}

TEST_F(KeyCharacters, AreThePlainOnesWhateverTheUserHolds) {
  keyboard.tap(kKeyCapsLock);
  keyboard.press({kKeyLeftShift, kKeyLeftControl});
  EXPECT_EQ(at(kVirtualA), "a");
  EXPECT_EQ(at(kVirtual1), "1");
  keyboard.release({kKeyLeftControl, kKeyLeftShift});
  keyboard.tap(kKeyCapsLock);
}

TEST_F(KeyCharacters, OfTheKeypadAreItsDigitsWithAndWithoutNumLock) {
  EXPECT_EQ(at(kVirtualKeypad1), "1");
  EXPECT_EQ(at(kVirtualKeypadPlus), "+");
  keyboard.tap(kKeyNumLock);
  EXPECT_EQ(at(kVirtualKeypad1), "1");
  keyboard.tap(kKeyNumLock);
}

TEST_F(KeyCharacters, KeyZeroWithControlAndCommandUnderFrenchIsShownAsQ) {
  use("fr");
  EXPECT_EQ(QKStringFromKeyCode(kVirtualA, kModifierFlagControl | kModifierFlagCommand), "⌃⌘q");
}

TEST_F(KeyCharacters, OfTheFortySixGlyphsAreAskedOfNoLayout) {
  for (const char* const layouts : {"us", "de", "fr", "ru", "dvorak"}) {
    use(layouts);
    for (const auto& [keyCode, glyph] : QKKeyGlyphTable()) {
      // The left modifier keys are shown by their flags alone.
      const bool isLeft = keyCode == 55 || keyCode == 56 || keyCode == 58 || keyCode == 59;
      EXPECT_EQ(QKStringFromKeyCode(keyCode, 0), isLeft ? "" : glyph) << keyCode << " " << layouts;
    }
  }
}

TEST_F(KeyCharacters, TheKeymapIsRequestedAgainOnlyAfterAChange) {
  use("us,ru");
  EXPECT_EQ(at(kVirtualA), "a");
  const int requests = keymapRequests();
  EXPECT_EQ(at(kVirtualQ), "q");
  EXPECT_EQ(at(kVirtualSemicolon), ";");
  EXPECT_EQ(keymapRequests(), requests);
  use("de");
  EXPECT_EQ(at(kVirtualZ), "y");
  EXPECT_EQ(at(kVirtualSemicolon), "ö");
  EXPECT_EQ(keymapRequests(), requests + 1);
}

TEST_F(KeyCharacters, AreNoneWithoutAServerAndBackWithTheNext) {
  EXPECT_EQ(at(kVirtualA), "a");
  server.kill();
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(at(kVirtualA), "-");
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
  const XServer next;
  setenv("DISPLAY", next.display().c_str(), 1);
  EXPECT_EQ(at(kVirtualA), "a");
}

TEST(KeyCharactersWithoutADisplay, AreNone) {
  unsetenv("DISPLAY");
  EXPECT_FALSE(makeSystemKeyboardLayout()->translate(kVirtualA, 0));
}

}  // namespace
}  // namespace seldial::platform::x11
