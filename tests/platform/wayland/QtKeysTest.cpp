// Plasma's codes for keyboard positions, in one layout and in several.
#include <gmock/gmock.h>

#include "platform/VirtualKeys.h"
#include "platform/linux/KeyTable.h"
#include "platform/wayland/GlobalAccel.h"
#include "tests/support/wayland/UserKeyboard.h"

namespace seldial::platform::wayland {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kShift = 0x02000000;
constexpr int kControl = 0x04000000;
constexpr int kAlt = 0x08000000;
constexpr int kMeta = 0x10000000;

std::vector<int> keysIn(const char* layouts, std::uint32_t virtualKey, std::uint32_t modifiers,
                        int qtVersion = 5) {
  return qtKeys(*tests::keymapOf(layouts), *linux_port::keyAtPosition(virtualKey), modifiers,
                qtVersion);
}

TEST(QtKeys, ALetterIsTheLayoutsCapitalLetter) {
  EXPECT_THAT(keysIn("us", kVK_ANSI_D, kHotKeyControl | kHotKeyOption),
              ElementsAre(kControl | kAlt | 'D'));
  EXPECT_THAT(keysIn("fr", kVK_ANSI_Q, kHotKeyCommand), ElementsAre(kMeta | 'A'));
  EXPECT_THAT(keysIn("ru", kVK_ANSI_D, kHotKeyControl), ElementsAre(kControl | 0x412));
  EXPECT_THAT(keysIn("gr", kVK_ANSI_D, kHotKeyControl), ElementsAre(kControl | 0x394));
  EXPECT_THAT(keysIn("de", kVK_ANSI_Semicolon, 0), ElementsAre(0xd6));
}

TEST(QtKeys, ShiftStaysWithALetterAndIsPartOfAnotherSign) {
  EXPECT_THAT(keysIn("us", kVK_ANSI_D, kHotKeyControl | kHotKeyShift),
              ElementsAre(kControl | kShift | 'D'));
  EXPECT_THAT(keysIn("ru", kVK_ANSI_D, kHotKeyShift), ElementsAre(kShift | 0x412));
  EXPECT_THAT(keysIn("us", kVK_ANSI_2, kHotKeyControl | kHotKeyShift), ElementsAre(kControl | '@'));
  EXPECT_THAT(keysIn("de", kVK_ANSI_2, kHotKeyControl | kHotKeyShift), ElementsAre(kControl | '"'));
  EXPECT_THAT(keysIn("us", kVK_Space, kHotKeyShift), ElementsAre(kShift | ' '));
}

TEST(QtKeys, EveryLayoutCountsOnce) {
  EXPECT_THAT(keysIn("us,ru", kVK_ANSI_D, kHotKeyControl),
              ElementsAre(kControl | 'D', kControl | 0x412));
  EXPECT_THAT(keysIn("us,fr,de", kVK_ANSI_Q, kHotKeyControl),
              ElementsAre(kControl | 'Q', kControl | 'A'));
}

TEST(QtKeys, KeysWithoutACharacterAreTheSameEverywhere) {
  EXPECT_THAT(keysIn("us,ru", kVK_F5, kHotKeyShift | kHotKeyCommand),
              ElementsAre(kShift | kMeta | 0x01000034));
  EXPECT_THAT(keysIn("us", kVK_F20, 0), IsEmpty()) << "the usual keymap has other keys there";
  EXPECT_THAT(keysIn("us", kVK_Help, kHotKeyShift), ElementsAre(kShift | 0x01000006));
  EXPECT_THAT(keysIn("us", kVK_PageUp, 0), ElementsAre(0x01000016));
  EXPECT_THAT(keysIn("us", kVK_PageDown, 0), ElementsAre(0x01000017));
  EXPECT_THAT(keysIn("us", kVK_Return, kHotKeyOption), ElementsAre(kAlt | 0x01000004));
  EXPECT_THAT(keysIn("us", kVK_Tab, kHotKeyControl | kHotKeyShift),
              ElementsAre(kControl | kShift | 0x01000001));
  EXPECT_THAT(keysIn("fr", kVK_ANSI_LeftBracket, kHotKeyControl),
              ElementsAre(kControl | 0x01001252))
      << "a dead circumflex";
}

TEST(QtKeys, SomeDependOnTheVersionOfQt) {
  // In the usual keymap F16 is XF86Launch7.
  EXPECT_THAT(keysIn("us", kVK_F16, 0, 5), ElementsAre(0x010000ab));
  EXPECT_THAT(keysIn("us", kVK_F16, 0, 6), ElementsAre(0x010000a9));
  EXPECT_THAT(keysIn("us", kVK_ANSI_D, 0, 6), ElementsAre('D'));
}

TEST(QtKeys, WhatTheCompositorKeepsForItselfHasNone) {
  EXPECT_THAT(keysIn("us", kVK_F5, kHotKeyControl | kHotKeyOption), IsEmpty())
      << "the key switches to another console";
}

}  // namespace
}  // namespace seldial::platform::wayland
