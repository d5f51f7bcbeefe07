// The field by the keys of a real keyboard, under a window manager that has hot keys of its own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QPushButton>
#include <QVBoxLayout>

#include "hotkey/QKHotKeyCenter.h"
#include "hotkey/qt/QKHotKeyTextField.h"
#include "platform/Installed.h"
#include "platform/ModifierFlags.h"
#include "platform/RecordingKeyboard.h"
#include "tests/desktop/XClient.h"
#include "tests/doubles/CapturedOutput.h"
#include "tests/hotkey/qt/QtDesktop.h"

namespace seldial {
namespace {

using namespace desktop;   // NOLINT: keys and keyboards by their short names
using namespace platform;  // NOLINT: the same for modifier flags
using testing::ElementsAre;
using Keys = std::vector<std::uint8_t>;

constexpr std::uint16_t kVirtualD = 2;
constexpr std::uint16_t kVirtualK = 40;

/// A window with a field between two buttons; the second button has the focus.
class QKHotKeyTextFieldTest : public testing::Test {
 protected:
  QKHotKeyTextFieldTest() {
    auto* const layout = new QVBoxLayout(&window);
    for (QWidget* const widget : {static_cast<QWidget*>(&before), static_cast<QWidget*>(&field),
                                  static_cast<QWidget*>(&after)}) {
      layout->addWidget(widget);
    }
    after.setFocus();
    QObject::connect(&field, &QKHotKeyTextField::actionSent, &window,
                     [this] { shown.push_back(field.text().toStdString()); });
    QObject::connect(&before, &QPushButton::clicked, &window, [this] { ++clicks; });
    QObject::connect(&after, &QPushButton::clicked, &window, [this] { ++clicks; });
  }

  void SetUp() override { ASSERT_TRUE(activate(window)); }
  void TearDown() override { EXPECT_EQ(keyboard.down(), std::set<std::uint8_t>{}); }

  void edit() {
    field.setFocus();
    ASSERT_TRUE(field.isEditing());
  }

  /// Whether so many actions come.
  bool acts(std::size_t times) {
    return comesTrue([&] { return shown.size() >= times; });
  }

  static std::shared_ptr<QKHotKey> record(std::uint16_t keyCode, std::uint64_t flags,
                                          QKHotKeyTask task = nullptr) {
    return QKHotKey::hotKeyWithKeyCode(keyCode, flags, std::move(task));
  }

  Keyboard& keyboard = QtDesktop::shared().keyboard;
  QWidget window;
  QPushButton before{&window};
  QKHotKeyTextField field{&window};
  QPushButton after{&window};
  std::vector<std::string> shown;  ///< the text at each action
  int clicks = 0;
};

TEST_F(QKHotKeyTextFieldTest, CommandShiftKSetsTheRecordShowsItAndSendsTheActionOnce) {
  edit();
  keyboard.tap(kKeyK);  // a key has been seen: the modifiers on the way are not recorded
  press({kKeyLeftSuper, kKeyLeftShift, kKeyK});
  ASSERT_TRUE(acts(1));
  EXPECT_THAT(shown, ElementsAre("⇧⌘K"));
  EXPECT_EQ(field.hotKey()->keyCode(), kVirtualK);
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
  const auto original = record(kVirtualD, kModifierFlagControl);
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

TEST_F(QKHotKeyTextFieldTest, TheSameRecordAgainChangesNothingAndIsNotShownAfresh) {
  const auto hotKey = record(kVirtualK, kModifierFlagCommand);
  field.setHotKey(hotKey);
  field.setText(QStringLiteral("left alone"));
  field.setHotKey(hotKey);
  EXPECT_EQ(field.text(), QStringLiteral("left alone"));
  field.setHotKey(record(kVirtualK, kModifierFlagCommand));
  EXPECT_EQ(field.text(), QStringLiteral("⌘K")) << "an equal record is another object";
  field.setHotKey(nullptr);
  EXPECT_EQ(field.text(), QString());
}

TEST_F(QKHotKeyTextFieldTest, ThePlainStringAccessorsWorkAndSayThatTheyAreNotWanted) {
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
  field.setHotKey(record(kVirtualD, kModifierFlagControl, [&](const QKKeyEvent&) { ++runs; }));
  edit();
  keyboard.tap(kKeyK);
  press({kKeyLeftAlt, kKeyK});
  ASSERT_TRUE(acts(1));
  field.hotKey()->invokeWithEvent({});
  EXPECT_EQ(runs, 1);
}

TEST_F(QKHotKeyTextFieldTest, AFunctionKeyIsRecordedByItself) {
  edit();
  keyboard.tap(kKeyF5);
  ASSERT_TRUE(acts(1));
  EXPECT_THAT(shown, ElementsAre("F5"));
  EXPECT_EQ(field.hotKey()->modifierFlags(), std::uint64_t{kModifierFlagFunction});
}

TEST_F(QKHotKeyTextFieldTest, CapsLockIsPartOfTheFlagsAndNoModifier) {
  edit();
  keyboard.tap(kKeyCapsLock);
  keyboard.tap(kKeyK);
  press({kKeyLeftControl, kKeyK});
  keyboard.tap(kKeyCapsLock);
  ASSERT_TRUE(acts(1));
  EXPECT_THAT(shown, ElementsAre("⌃K"));
  EXPECT_EQ(field.hotKey()->modifierFlags(), kModifierFlagControl | kModifierFlagCapsLock);
}

TEST_F(QKHotKeyTextFieldTest, CapsLockWithAModifierIsRecordedAsItGoesDown) {
  edit();
  for (const std::uint64_t lock : {std::uint64_t{kModifierFlagCapsLock}, std::uint64_t{0}}) {
    shown.clear();
    press({kKeyLeftControl, kKeyCapsLock});
    const KeyCounter keys(field);
    ASSERT_TRUE(comesTrue([&] { return keys.releases() == 2; }));
    EXPECT_THAT(shown, ElementsAre("⌃", "⌃⇪"));
    EXPECT_EQ(field.hotKey()->modifierFlags(), kModifierFlagControl | lock);
  }
}

TEST_F(QKHotKeyTextFieldTest, OfTwoHeldShiftKeysOneThatGoesUpLeavesShift) {
  edit();
  press({kKeyLeftShift, kKeyRightShift});
  ASSERT_TRUE(acts(3));
  EXPECT_THAT(shown, ElementsAre("⇧", "⇧⇧", "⇧⇧"))
      << "left down, right down, right up while the left one is held";
}

TEST_F(QKHotKeyTextFieldTest, AKeyThatWasHeldWhenTheEditingBeganCounts) {
  const KeyCounter keys(after);
  keyboard.press(kKeyLeftShift);
  ASSERT_TRUE(comesTrue([&] { return keys.presses() == 1; }));
  edit();
  press({kKeyRightShift});
  keyboard.release(kKeyLeftShift);
  ASSERT_TRUE(acts(2));
  EXPECT_THAT(shown, ElementsAre("⇧⇧", "⇧⇧"));
}

TEST_F(QKHotKeyTextFieldTest, AltAfterShiftIsAltThoughItsSymbolIsAnotherThen) {
  edit();
  press({kKeyLeftShift, kKeyLeftAlt, kKeyK});
  ASSERT_TRUE(acts(3));
  EXPECT_THAT(shown, ElementsAre("⇧", "⌥⇧", "⌥⇧K"));
}

/// Another layout for as long as it lives.
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

TEST_F(QKHotKeyTextFieldTest, AModifierThatLiesElsewhereCountsAsWhatItDoes) {
  const Layout layout("ctrl:nocaps");
  edit();
  press({kKeyCapsLock, kKeyD});
  ASSERT_TRUE(acts(2));
  EXPECT_THAT(shown, ElementsAre("⌃", "⌃D"));
}

TEST_F(QKHotKeyTextFieldTest, AnEscapeThatLiesElsewhereIsEscape) {
  const Layout layout("caps:escape");
  edit();
  keyboard.tap(kKeyCapsLock);
  ASSERT_TRUE(comesTrue([this] { return !field.isEditing(); }));
}

TEST_F(QKHotKeyTextFieldTest, ARepeatingKeyIsRecordedOnce) {
  edit();
  keyboard.tap(kKeyK);
  keyboard.press(kKeyLeftControl);
  keyboard.hold(kKeyD, std::chrono::milliseconds(900));  // it repeats after 660
  keyboard.release(kKeyLeftControl);
  press({kKeyLeftControl, kKeyK});
  ASSERT_TRUE(acts(2));
  EXPECT_THAT(shown, ElementsAre("⌃D", "⌃K"));
}

TEST_F(QKHotKeyTextFieldTest, TabIsNoTrapAndNoWayOutWhileItRecords) {
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
    ASSERT_TRUE(comesTrue([this] { return !field.isEditing(); }));
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
  ASSERT_TRUE(comesTrue([this] { return !field.isEditing(); }));
  press({kKeyLeftAlt, kKeyK});
  EXPECT_TRUE(comesTrue([this] { return clicks == 1; })) << "it acts otherwise";
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
  ASSERT_TRUE(comesTrue([this] { return !field.isEditing(); }));
  press({kKeyLeftAlt, kKeyF4});
  EXPECT_TRUE(comesTrue([this] { return !window.isVisible(); }));
}

TEST_F(QKHotKeyTextFieldTest, ACombinationThatIsRegisteredIsRecordedAndNotReleasedToItsOwner) {
  int runs = 0;
  const auto registered = QKHotKeyCenter::sharedHotKeyCenter()->registerHotKeyWithKeyCode(
      kVirtualD, kModifierFlagControl, [&](const QKKeyEvent&) { ++runs; });
  ASSERT_TRUE(registered);
  edit();
  press({kKeyLeftControl, kKeyD});
  ASSERT_TRUE(acts(2));
  EXPECT_THAT(shown, ElementsAre("⌃", "⌃D"));
  EXPECT_EQ(runs, 0);
  QKHotKeyCenter::sharedHotKeyCenter()->unregisterHotKey(registered);
}

TEST_F(QKHotKeyTextFieldTest, WhereTheGrabIsRefusedItRecordsWhatReachesTheWindow) {
  XClient menu(QtDesktop::shared().server.display());
  ASSERT_TRUE(comesTrue([this] { return !window.isActiveWindow(); }));
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
    ASSERT_TRUE(comesTrue([this] { return !field.isEditing(); }));
    keyboard.tap(kKeyK);
    other.waitForRelease(kKeyK);  // the grab has ended too
  }
  ASSERT_TRUE(activate(window));
  EXPECT_FALSE(field.isEditing());
  EXPECT_THAT(shown, ElementsAre("⌃D"));
  EXPECT_EQ(field.hotKey()->keyCode(), kVirtualD) << "it keeps the last record";
}

TEST_F(QKHotKeyTextFieldTest, WhenTheEditingHasEndedNoEarlierRecordIsLeft) {
  std::weak_ptr<QKHotKey> original;
  {
    const auto first = record(kVirtualK, kModifierFlagControl);
    original = first;
    field.setHotKey(first);
  }
  bool isGone = false;
  QObject::connect(&field, &QKHotKeyTextField::editingChanged, &window,
                   [&](bool isEditing) { isGone = !isEditing && original.expired(); });
  edit();
  press({kKeyLeftControl, kKeyD});
  keyboard.tap(kKeyReturn);
  ASSERT_TRUE(comesTrue([this] { return !field.isEditing(); }));
  EXPECT_TRUE(isGone);
}

TEST_F(QKHotKeyTextFieldTest, WithoutAKeyboardToReadNothingIsRecorded) {
  const auto keyboardBefore = std::exchange(installed<RecordingKeyboard>(), nullptr);
  edit();
  const KeyCounter keys(field);
  press({kKeyLeftControl, kKeyD});
  keyboard.tap(kKeyReturn);
  ASSERT_TRUE(comesTrue([&] { return keys.releases() == 3; }));
  EXPECT_TRUE(field.isEditing());
  after.setFocus();
  installed<RecordingKeyboard>() = keyboardBefore;
  edit();
  keyboard.tap(kKeyF5);
  ASSERT_TRUE(acts(1));
  EXPECT_THAT(shown, ElementsAre("F5"));
}

}  // namespace
}  // namespace seldial
