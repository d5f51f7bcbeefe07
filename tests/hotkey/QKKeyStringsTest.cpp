// Display strings of hot keys.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hotkey/QKKeyStrings.h"
#include "platform/VirtualKeys.h"
#include "tests/support/FakeKeyboardLayout.h"

namespace seldial {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr std::uint64_t kCapsLock = platform::kModifierFlagCapsLock;
constexpr std::uint64_t kShift = platform::kModifierFlagShift;
constexpr std::uint64_t kControl = platform::kModifierFlagControl;
constexpr std::uint64_t kOption = platform::kModifierFlagOption;
constexpr std::uint64_t kCommand = platform::kModifierFlagCommand;

class QKKeyStrings : public testing::Test {
 protected:
  QKKeyStrings() { layout.keys = {{0, "a"}, {1, "ß"}}; }

  std::string shown(std::uint16_t keyCode, std::uint64_t modifierFlags) {
    return QKStringFromKeyCode(keyCode, modifierFlags, layout);
  }

  tests::FakeKeyboardLayout layout;
};

TEST_F(QKKeyStrings, KeyZeroWithControlAndCommandIsTheirGlyphsAndTheLayoutsCharacter) {
  EXPECT_EQ(shown(0, kControl | kCommand), "⌃⌘a");
}

TEST_F(QKKeyStrings, TheLeftShiftKeyWithShiftIsOneGlyph) {
  EXPECT_EQ(shown(56, kShift), "⇧");
}

TEST_F(QKKeyStrings, TheRightShiftKeyWithShiftIsTwoGlyphs) {
  EXPECT_EQ(shown(60, kShift), "⇧⇧");
}

TEST_F(QKKeyStrings, TheFortySixGlyphs) {
  const std::map<std::uint16_t, std::string> glyphs{
      {36, "↩"},    {48, "⇥"},    {49, "⎵"},    {51, "⌫"},    {53, "⎋"},    {55, "⌘"},
      {63, "⌘"},    {56, "⇧"},    {60, "⇧"},    {57, "⇪"},    {58, "⌥"},    {61, "⌥"},
      {59, "⌃"},    {62, "⌃"},    {72, "🔊"},    {73, "🔈"},    {74, "🔇"},    {117, "⌦"},
      {115, "↖"},   {119, "↘"},   {116, "⇞"},   {121, "⇟"},   {123, "←"},   {124, "→"},
      {125, "↓"},   {126, "↑"},   {122, "F1"},  {120, "F2"},  {99, "F3"},   {118, "F4"},
      {96, "F5"},   {97, "F6"},   {98, "F7"},   {100, "F8"},  {101, "F9"},  {109, "F10"},
      {103, "F11"}, {111, "F12"}, {105, "F13"}, {107, "F14"}, {113, "F15"}, {106, "F16"},
      {64, "F17"},  {79, "F18"},  {80, "F19"},  {90, "F20"}};
  ASSERT_EQ(glyphs.size(), 46U);
  EXPECT_EQ(QKKeyGlyphTable().size(), 46U);
  for (const auto& [keyCode, glyph] : glyphs) {
    EXPECT_EQ(QKKeyGlyphTable().at(keyCode), glyph) << keyCode;
    const bool leftModifier = keyCode == 55 || keyCode == 56 || keyCode == 58 || keyCode == 59;
    EXPECT_EQ(shown(keyCode, kOption), "⌥" + (leftModifier ? "" : glyph)) << keyCode;
  }
  EXPECT_THAT(layout.asked, IsEmpty());
}

TEST_F(QKKeyStrings, TheGlyphsAreTheseCharacters) {
  EXPECT_EQ(QKKeyGlyphTable().at(36), "\u21A9");
  EXPECT_EQ(QKKeyGlyphTable().at(48), "\u21E5");
  EXPECT_EQ(QKKeyGlyphTable().at(49), "\u23B5");
  EXPECT_EQ(QKKeyGlyphTable().at(51), "\u232B");
  EXPECT_EQ(QKKeyGlyphTable().at(53), "\u238B");
  EXPECT_EQ(QKKeyGlyphTable().at(55), "\u2318");
  EXPECT_EQ(QKKeyGlyphTable().at(56), "\u21E7");
  EXPECT_EQ(QKKeyGlyphTable().at(57), "\u21EA");
  EXPECT_EQ(QKKeyGlyphTable().at(58), "\u2325");
  EXPECT_EQ(QKKeyGlyphTable().at(59), "\u2303");
  EXPECT_EQ(QKKeyGlyphTable().at(72), "\U0001F50A");
  EXPECT_EQ(QKKeyGlyphTable().at(73), "\U0001F508");
  EXPECT_EQ(QKKeyGlyphTable().at(74), "\U0001F507");
  EXPECT_EQ(QKKeyGlyphTable().at(117), "\u2326");
  EXPECT_EQ(QKKeyGlyphTable().at(115), "\u2196");
  EXPECT_EQ(QKKeyGlyphTable().at(119), "\u2198");
  EXPECT_EQ(QKKeyGlyphTable().at(116), "\u21DE");
  EXPECT_EQ(QKKeyGlyphTable().at(121), "\u21DF");
  EXPECT_EQ(QKKeyGlyphTable().at(123), "\u2190");
  EXPECT_EQ(QKKeyGlyphTable().at(124), "\u2192");
  EXPECT_EQ(QKKeyGlyphTable().at(125), "\u2193");
  EXPECT_EQ(QKKeyGlyphTable().at(126), "\u2191");
}

TEST_F(QKKeyStrings, ModifiersComeInAFixedOrder) {
  EXPECT_EQ(shown(36, kCommand | kShift | kOption | kControl), "⌃⌥⇧⌘↩");
}

TEST_F(QKKeyStrings, CapsLockAndUnknownFlagsAreNotShown) {
  EXPECT_EQ(shown(36, ~std::uint64_t{kCommand | kShift | kOption | kControl}), "↩");
}

TEST_F(QKKeyStrings, ALeftModifierKeyAloneIsNothing) {
  for (const auto keyCode : std::initializer_list<std::uint16_t>{55, 56, 58, 59}) {
    EXPECT_EQ(shown(keyCode, 0), "") << keyCode;
    EXPECT_EQ(shown(keyCode, kControl | kCommand), "⌃⌘") << keyCode;
  }
}

TEST_F(QKKeyStrings, TheOtherModifierKeysAreShownOnTopOfTheFlags) {
  EXPECT_EQ(shown(61, kOption), "⌥⌥");
  EXPECT_EQ(shown(62, kControl), "⌃⌃");
  EXPECT_EQ(shown(63, kShift), "⇧⌘");
}

TEST_F(QKKeyStrings, TheLayoutIsAskedWithTheModifierBitsUnshifted) {
  EXPECT_EQ(shown(1, kShift | kCommand | kCapsLock), "⇧⌘ß");
  EXPECT_THAT(layout.asked, ElementsAre(Pair(1, 0x200U | 0x100U | 0x400U)));
}

TEST_F(QKKeyStrings, AKeyWithoutCharactersAddsNothing) {
  EXPECT_EQ(shown(2, kControl), "⌃");
  EXPECT_EQ(shown(2, 0), "");
}

}  // namespace
}  // namespace seldial
