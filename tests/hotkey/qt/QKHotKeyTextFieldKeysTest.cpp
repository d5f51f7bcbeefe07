// Keys of a real keyboard in the field, with various layouts.
#include "tests/hotkey/qt/FieldTest.h"
#include "tests/support/desktop/KeymapRequests.h"

namespace seldial {
namespace {

using QKHotKeyTextFieldKeys = FieldTest;

TEST_F(QKHotKeyTextFieldKeys, AFunctionKeyIsRecordedByItself) {
  edit();
  keyboard.tap(kKeyF5);
  ASSERT_TRUE(acts(1));
  EXPECT_THAT(shown, ElementsAre("F5"));
  EXPECT_EQ(field.hotKey()->modifierFlags(), std::uint64_t{kModifierFlagFunction});
}

TEST_F(QKHotKeyTextFieldKeys, CapsLockIsPartOfTheFlagsAndNoModifier) {
  edit();
  keyboard.tap(kKeyCapsLock);
  keyboard.tap(kKeyK);
  press({kKeyLeftControl, kKeyK});
  keyboard.tap(kKeyCapsLock);
  ASSERT_TRUE(acts(1));
  EXPECT_THAT(shown, ElementsAre("⌃K"));
  EXPECT_EQ(field.hotKey()->modifierFlags(), kModifierFlagControl | kModifierFlagCapsLock);
}

TEST_F(QKHotKeyTextFieldKeys, CapsLockWithAModifierIsRecordedAsItGoesDown) {
  edit();
  for (const std::uint64_t lock : {std::uint64_t{kModifierFlagCapsLock}, std::uint64_t{0}}) {
    shown.clear();
    press({kKeyLeftControl, kKeyCapsLock});
    const KeyCounter keys(field);
    ASSERT_TRUE(becomesTrue([&] { return keys.releases() == 2; }));
    EXPECT_THAT(shown, ElementsAre("⌃", "⌃⇪"));
    EXPECT_EQ(field.hotKey()->modifierFlags(), kModifierFlagControl | lock);
  }
}

TEST_F(QKHotKeyTextFieldKeys, OfTwoHeldShiftKeysOneThatGoesUpLeavesShift) {
  edit();
  press({kKeyLeftShift, kKeyRightShift});
  ASSERT_TRUE(acts(3));
  EXPECT_THAT(shown, ElementsAre("⇧", "⇧⇧", "⇧⇧"))
      << "left down, right down, right up while the left one is held";
}

TEST_F(QKHotKeyTextFieldKeys, AKeyThatWasHeldWhenTheEditingBeganCounts) {
  const KeyCounter keys(after);
  keyboard.press(kKeyLeftShift);
  ASSERT_TRUE(becomesTrue([&] { return keys.presses() == 1; }));
  edit();
  press({kKeyRightShift});
  keyboard.release(kKeyLeftShift);
  ASSERT_TRUE(acts(2));
  EXPECT_THAT(shown, ElementsAre("⇧⇧", "⇧⇧"));
}

TEST_F(QKHotKeyTextFieldKeys, AltAfterShiftIsAltThoughItsSymbolIsAnotherThen) {
  edit();
  press({kKeyLeftShift, kKeyLeftAlt, kKeyK});
  ASSERT_TRUE(acts(3));
  EXPECT_THAT(shown, ElementsAre("⇧", "⌥⇧", "⌥⇧K"));
}

/// Sets another layout for the lifetime of the object.
class Layout {
 public:
  explicit Layout(const std::string& option) { set(option); }
  ~Layout() { set(""); }
  Layout(const Layout&) = delete;
  Layout& operator=(const Layout&) = delete;

 private:
  static void set(const std::string& option) {
    const auto& server = QtDesktop::shared().server;
    EXPECT_EQ(server.run({"setxkbmap", "-layout", "us", "-option", "", "-option", option}), 0);
    QCoreApplication::processEvents();
  }
};

TEST_F(QKHotKeyTextFieldKeys, ARemappedModifierCountsAsItsNewFunction) {
  const Layout layout("ctrl:nocaps");
  edit();
  press({kKeyCapsLock, kKeyD});
  ASSERT_TRUE(acts(2));
  EXPECT_THAT(shown, ElementsAre("⌃", "⌃D"));
}

TEST_F(QKHotKeyTextFieldKeys, ARemappedEscapeIsEscape) {
  const Layout layout("caps:escape");
  edit();
  keyboard.tap(kKeyCapsLock);
  ASSERT_TRUE(becomesTrue([this] { return !field.isEditing(); }));
}

TEST_F(QKHotKeyTextFieldKeys, NoKeystrokeRequestsTheKeymapAgain) {
  edit();
  press({kKeyLeftControl, kKeyK});
  ASSERT_TRUE(acts(2));
  const int requests = keymapRequests();
  press({kKeyLeftControl, kKeyD});
  ASSERT_TRUE(acts(3));
  EXPECT_THAT(shown, ElementsAre("⌃", "⌃K", "⌃D"));
  EXPECT_EQ(keymapRequests(), requests);
}

TEST_F(QKHotKeyTextFieldKeys, ARepeatingKeyIsRecordedOnce) {
  edit();
  keyboard.tap(kKeyK);
  keyboard.press(kKeyLeftControl);
  keyboard.hold(kKeyD, std::chrono::milliseconds(900));  // it repeats after 660
  keyboard.release(kKeyLeftControl);
  press({kKeyLeftControl, kKeyK});
  ASSERT_TRUE(acts(2));
  EXPECT_THAT(shown, ElementsAre("⌃D", "⌃K"));
}

}  // namespace
}  // namespace seldial
