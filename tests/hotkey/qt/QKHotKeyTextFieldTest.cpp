// The field with a real keyboard, under a window manager that has its own hot keys.
#include <utility>

#include "hotkey/QKHotKeyCenter.h"
#include "tests/hotkey/qt/FieldTest.h"
#include "tests/support/FakeKeyboardLayout.h"
#include "tests/support/desktop/XClient.h"

namespace seldial {
namespace {

using QKHotKeyTextFieldTest = FieldTest;

TEST_F(QKHotKeyTextFieldTest, CommandShiftKSetsTheRecordShowsItAndSendsTheActionOnce) {
  edit();
  keyboard.tap(kKeyK);  // a key has been seen: the modifiers on the way are not recorded
  press({kKeyLeftSuper, kKeyLeftShift, kKeyK});
  ASSERT_TRUE(acts(1));
  EXPECT_THAT(shown, ElementsAre("⇧⌘K"));
  EXPECT_EQ(field.hotKey()->keyCode(), kVK_ANSI_K);
  EXPECT_EQ(field.hotKey()->modifierFlags(), kModifierFlagShift | kModifierFlagCommand);
}

TEST_F(QKHotKeyTextFieldTest, KAloneDoesNothing) {
  edit();
  keyboard.tap(kKeyK);
  press({kKeyLeftControl, kKeyD});
  ASSERT_TRUE(acts(1));
  EXPECT_THAT(shown, ElementsAre("⌃D"));
}

TEST_F(QKHotKeyTextFieldTest, AModifierIsShownUntilAKeyWasSeenAndIgnoredAfterwards) {
  edit();
  press({kKeyLeftSuper, kKeyK});
  press({kKeyLeftAlt});
  press({kKeyLeftControl, kKeyD});
  ASSERT_TRUE(acts(3));
  EXPECT_THAT(shown, ElementsAre("⌘", "⌘K", "⌃D"));
}

TEST_F(QKHotKeyTextFieldTest, EscapeRestoresTheRecordAndSendsTheAction) {
  const auto original = record(kVK_ANSI_D, kModifierFlagControl);
  field.setHotKey(original);
  edit();
  keyboard.tap(kKeyK);
  press({kKeyLeftAlt, kKeyK});
  keyboard.tap(kKeyEscape);
  ASSERT_TRUE(acts(2));
  EXPECT_THAT(shown, ElementsAre("⌥K", "⌃D"));
  EXPECT_EQ(field.hotKey(), original);
  EXPECT_FALSE(field.isEditing());
}

TEST_F(QKHotKeyTextFieldTest, EscapeWhereThereWasNoRecordLeavesNone) {
  edit();
  keyboard.tap(kKeyK);
  press({kKeyLeftAlt, kKeyK});
  keyboard.tap(kKeyEscape);
  ASSERT_TRUE(acts(2));
  EXPECT_THAT(shown, ElementsAre("⌥K", ""));
  EXPECT_EQ(field.hotKey(), nullptr);
}

TEST_F(QKHotKeyTextFieldTest, ReturnAndEnterKeepTheRecordAndSendTheAction) {
  constexpr std::uint8_t kKeyKeypadEnter = 104;
  for (const std::uint8_t key : {std::uint8_t{kKeyReturn}, kKeyKeypadEnter}) {
    shown.clear();
    edit();
    keyboard.tap(kKeyK);
    press({kKeyLeftAlt, kKeyK});
    keyboard.tap(key);
    ASSERT_TRUE(acts(2));
    EXPECT_THAT(shown, ElementsAre("⌥K", "⌥K"));
    EXPECT_FALSE(field.isEditing());
  }
}

TEST_F(QKHotKeyTextFieldTest, ReturnWithShiftIsRecorded) {
  edit();
  keyboard.tap(kKeyK);
  press({kKeyLeftShift, kKeyReturn});
  ASSERT_TRUE(acts(1));
  EXPECT_THAT(shown, ElementsAre("⇧↩"));
  EXPECT_TRUE(field.isEditing());
}

TEST_F(QKHotKeyTextFieldTest, TheSameRecordAgainChangesNothing) {
  const auto hotKey = record(kVK_ANSI_K, kModifierFlagCommand);
  field.setHotKey(hotKey);
  field.setText(QStringLiteral("left alone"));
  field.setHotKey(hotKey);
  EXPECT_EQ(field.text(), QStringLiteral("left alone"));
  field.setHotKey(record(kVK_ANSI_K, kModifierFlagCommand));
  EXPECT_EQ(field.text(), QStringLiteral("⌘K")) << "an equal record is another object";
  field.setHotKey(nullptr);
  EXPECT_EQ(field.text(), QString());
}

class QKHotKeyTextFieldLayoutTest : public FieldTest {
 protected:
  QKHotKeyTextFieldLayoutTest()
      : QKHotKeyTextFieldLayoutTest(std::make_shared<tests::FakeKeyboardLayout>()) {}

  std::shared_ptr<tests::FakeKeyboardLayout> layout;

 private:
  explicit QKHotKeyTextFieldLayoutTest(const std::shared_ptr<tests::FakeKeyboardLayout>& fake)
      : FieldTest({fake, QtDesktop::shared().ports().keyboard().recording}), layout(fake) {}
};

TEST_F(QKHotKeyTextFieldLayoutTest, IsUpperCasedAsUnicodeDoesIt) {
  for (const auto& [character, shownAs] :
       {std::pair{"ß", "⌃SS"}, {"ф", "⌃Ф"}, {"é", "⌃É"}, {"ŉ", "⌃ʼN"}, {"ı", "⌃I"}}) {
    layout->keys = {{kVK_ANSI_K, character}};
    field.setHotKey(record(kVK_ANSI_K, kModifierFlagControl));
    EXPECT_EQ(field.text().toStdString(), shownAs);
    edit();
    press({kKeyLeftControl, kKeyK});
    keyboard.tap(kKeyReturn);
    ASSERT_TRUE(becomesTrue([this] { return !field.isEditing(); }));
    EXPECT_EQ(shown.back(), shownAs) << "as it is recorded";
  }
}

TEST_F(QKHotKeyTextFieldTest, ThePlainStringAccessorsWorkAndWarn) {
  testing::internal::CaptureStderr();
  field.setStringValue(QStringLiteral("text"));
  EXPECT_EQ(field.stringValue(), QStringLiteral("text"));
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "-[QKHotKeyTextField setStringValue:] is not what you want. Use -[QKHotKeyTextField "
            "setHotKey:] instead.\n"
            "-[QKHotKeyTextField stringValue] is not what you want. Use -[QKHotKeyTextField "
            "hotKey] instead.\n");
}

TEST_F(QKHotKeyTextFieldTest, NewRecordsHaveTheTaskOfTheFirst) {
  int runs = 0;
  field.setHotKey(record(kVK_ANSI_D, kModifierFlagControl, [&](const QKKeyEvent&) { ++runs; }));
  edit();
  keyboard.tap(kKeyK);
  press({kKeyLeftAlt, kKeyK});
  ASSERT_TRUE(acts(1));
  field.hotKey()->invokeWithEvent({});
  EXPECT_EQ(runs, 1);
}

TEST_F(QKHotKeyTextFieldTest, TabMovesTheFocusExceptWhileItRecords) {
  edit();
  keyboard.tap(kKeyTab);
  press({kKeyLeftControl, kKeyTab});
  ASSERT_TRUE(acts(1));
  EXPECT_THAT(shown, ElementsAre("⌃⇥"));
  EXPECT_TRUE(field.hasFocus());
}

TEST_F(QKHotKeyTextFieldTest, ReturnAndEscapeMoveTheFocusOn) {
  for (const auto key : {kKeyReturn, kKeyEscape}) {
    edit();
    keyboard.tap(key);
    ASSERT_TRUE(becomesTrue([this] { return !field.isEditing(); }));
    EXPECT_TRUE(after.hasFocus());
  }
}

TEST_F(QKHotKeyTextFieldTest, NoShortcutOfTheWindowActsWhileItRecords) {
  before.setShortcut(Qt::ALT | Qt::Key_K);
  edit();
  keyboard.tap(kKeyK);
  press({kKeyLeftAlt, kKeyK});
  ASSERT_TRUE(acts(1));
  EXPECT_THAT(shown, ElementsAre("⌥K"));
  EXPECT_EQ(clicks, 0);
  keyboard.tap(kKeyReturn);
  ASSERT_TRUE(becomesTrue([this] { return !field.isEditing(); }));
  press({kKeyLeftAlt, kKeyK});
  EXPECT_TRUE(becomesTrue([this] { return clicks == 1; })) << "it acts otherwise";
}

TEST_F(QKHotKeyTextFieldTest, NothingCanBeTypedPastedOrDropped) {
  EXPECT_TRUE(field.isReadOnly());
  EXPECT_FALSE(field.testAttribute(Qt::WA_InputMethodEnabled));
  EXPECT_EQ(field.contextMenuPolicy(), Qt::PreventContextMenu);
  edit();
  press({kKeyLeftControl, 55});  // Ctrl+V
  ASSERT_TRUE(acts(2));
  EXPECT_THAT(shown, ElementsAre("⌃", "⌃V"));
}

TEST_F(QKHotKeyTextFieldTest, ACombinationOfTheWindowManagerIsRecorded) {
  edit();
  press({kKeyLeftAlt, kKeyF4});
  ASSERT_TRUE(acts(2));
  EXPECT_THAT(shown, ElementsAre("⌥", "⌥F4"));
  EXPECT_TRUE(window.isVisible());
}

TEST_F(QKHotKeyTextFieldTest, TheWindowManagerHasItsKeysBackAfterwards) {
  edit();
  keyboard.tap(kKeyReturn);
  ASSERT_TRUE(becomesTrue([this] { return !field.isEditing(); }));
  press({kKeyLeftAlt, kKeyF4});
  EXPECT_TRUE(becomesTrue([this] { return !window.isVisible(); }));
}

TEST_F(QKHotKeyTextFieldTest, ACombinationThatIsRegisteredIsRecordedAndNotReleasedToItsOwner) {
  int runs = 0;
  const auto registered = QKHotKeyCenter::sharedHotKeyCenter()->registerHotKeyWithKeyCode(
      kVK_ANSI_D, kModifierFlagControl, [&](const QKKeyEvent&) { ++runs; });
  ASSERT_TRUE(registered);
  edit();
  press({kKeyLeftControl, kKeyD});
  ASSERT_TRUE(acts(2));
  EXPECT_THAT(shown, ElementsAre("⌃", "⌃D"));
  EXPECT_EQ(runs, 0);
  QKHotKeyCenter::sharedHotKeyCenter()->unregisterHotKey(registered);
}

TEST_F(QKHotKeyTextFieldTest, IfTheGrabIsRefusedItRecordsTheKeysThatReachTheWindow) {
  XClient menu(QtDesktop::shared().server.display());
  QtDesktop::shared().windows.waitUntilActive(menu.window());
  ASSERT_TRUE(becomesTrue([this] { return !window.isActiveWindow(); }));
  ASSERT_TRUE(activate(window));
  menu.grabKeyboard(true);
  edit();
  menu.grabKeyboard(false);
  press({kKeyLeftControl, kKeyD});
  ASSERT_TRUE(acts(2));
  EXPECT_THAT(shown, ElementsAre("⌃", "⌃D"));
}

TEST_F(QKHotKeyTextFieldTest, LosingTheActivationEndsTheEditingWithoutAnActionAndForGood) {
  edit();
  keyboard.tap(kKeyK);
  press({kKeyLeftControl, kKeyD});
  ASSERT_TRUE(acts(1));
  {
    const XClient other(QtDesktop::shared().server.display());
    ASSERT_TRUE(becomesTrue([this] { return !field.isEditing(); }));
    keyboard.tap(kKeyK);
    other.waitForRelease(kKeyK);  // the grab has ended too
  }
  ASSERT_TRUE(activate(window));
  EXPECT_FALSE(field.isEditing());
  EXPECT_THAT(shown, ElementsAre("⌃D"));
  EXPECT_EQ(field.hotKey()->keyCode(), kVK_ANSI_D) << "it keeps the last record";
}

TEST_F(QKHotKeyTextFieldTest, AfterTheEditingNoEarlierRecordIsLeft) {
  std::weak_ptr<QKHotKey> original;
  {
    const auto first = record(kVK_ANSI_K, kModifierFlagControl);
    original = first;
    field.setHotKey(first);
  }
  bool isGone = false;
  QObject::connect(&field, &QKHotKeyTextField::editingChanged, &window,
                   [&](bool isEditing) { isGone = !isEditing && original.expired(); });
  edit();
  press({kKeyLeftControl, kKeyD});
  keyboard.tap(kKeyReturn);
  ASSERT_TRUE(becomesTrue([this] { return !field.isEditing(); }));
  EXPECT_TRUE(isGone);
}

class QKHotKeyTextFieldWithoutKeyboard : public FieldTest {
 protected:
  QKHotKeyTextFieldWithoutKeyboard()
      : FieldTest({QtDesktop::shared().ports().keyboard().layout, nullptr}) {}
};

TEST_F(QKHotKeyTextFieldWithoutKeyboard, RecordsNothing) {
  edit();
  const KeyCounter keys(field);
  press({kKeyLeftControl, kKeyD});
  keyboard.tap(kKeyReturn);
  ASSERT_TRUE(becomesTrue([&] { return keys.releases() == 3; }));
  EXPECT_TRUE(field.isEditing());
  EXPECT_TRUE(shown.empty());
  EXPECT_EQ(field.hotKey(), nullptr);
}

}  // namespace
}  // namespace seldial
