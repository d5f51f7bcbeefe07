// The window, operated with a real keyboard.
#include <QAccessible>
#include <QLabel>
#include <thread>

#include "shortcut/ShortcutWindow.h"
#include "tests/platform/x11/ForeignGrabs.h"
#include "tests/shortcut/WindowTest.h"
#include "tests/support/desktop/KeymapRequests.h"
#include "tests/support/desktop/XClient.h"

namespace seldial {
namespace {

using platform::x11::ForeignGrabs;
using testing::ElementsAre;

constexpr unsigned kControlAlt = kStateControl | kStateAlt;

class ShortcutWindowTest : public WindowTest {
 protected:
  [[nodiscard]] std::string focused() const {
    const auto* const widget = window->focusWidget();
    return widget != nullptr ? widget->objectName().toStdString() : "nothing";
  }
  [[nodiscard]] bool canAccept() const { return control<QPushButton>("accept")->isEnabled(); }
  [[nodiscard]] std::string shortcutText() const {
    return control<QLabel>("shortcut-text")->text().toStdString();
  }
  void useShortcut() { press({kKeyLeftControl, kKeyLeftAlt, kKeyD}); }

  ForeignGrabs others{QtDesktop::shared().server.display()};
};

TEST_F(ShortcutWindowTest, OpensWithoutRecordingAndWithNothingToAccept) {
  open();
  EXPECT_FALSE(field()->isEditing());
  EXPECT_EQ(focused(), "record");
  EXPECT_FALSE(canAccept());
  EXPECT_FALSE(control<QPushButton>("clear")->isEnabled());
  EXPECT_EQ(shortcutText(), "No shortcut yet");
}

TEST_F(ShortcutWindowTest, OpensWithTheShortcutThatItIsGivenReadyToBeAccepted) {
  open(controlAltD(), 700);
  EXPECT_EQ(field()->text(), QStringLiteral("⌃⌥D"));
  EXPECT_EQ(shortcutText(), "Ctrl + Alt + D");
  EXPECT_EQ(control<QSpinBox>("delay")->value(), 700);
  EXPECT_EQ(focused(), "accept");
}

TEST_F(ShortcutWindowTest, ARecordedShortcutLightsUpWhenItIsReleasedAndGoesOutAgain) {
  open();
  record({kKeyLeftControl, kKeyLeftAlt, kKeyD});
  EXPECT_EQ(shortcutText(), "Ctrl + Alt + D");
  ASSERT_TRUE(says("Try it here"));
  keyboard.press({kKeyLeftControl, kKeyLeftAlt, kKeyD});
  QCoreApplication::processEvents();
  EXPECT_FALSE(isLit());
  keyboard.release({kKeyD, kKeyLeftAlt, kKeyLeftControl});
  EXPECT_TRUE(becomesTrue([this] { return isLit(); }));
  EXPECT_TRUE(says("Try it here"));
}

TEST_F(ShortcutWindowTest, OnWaylandItSaysWhatItCannotKnow) {
  const auto detail = [this] { return status()->accessibleDescription().toStdString(); };
  open(controlAltD());
  EXPECT_THAT(detail(), testing::Not(testing::HasSubstr("Wayland")));
  window->setOnWayland();
  window->begin(controlAltD(), 500);
  EXPECT_THAT(detail(),
              testing::HasSubstr("On Wayland this does not show whether the desktop allows it"));
}

TEST_F(ShortcutWindowTest, OnWaylandSeldialHoldsWhatIsFreeOnXwayland) {
  ours = {[](const HotKey& hotKey) { return hotKey == controlAltD(); },
          [](const std::function<void()>& /*used*/) { return std::make_shared<int>(); }};
  open();
  window->setOnWayland();
  record({kKeyLeftControl, kKeyLeftAlt, kKeyD});
  EXPECT_EQ(statusName(), "Seldial uses this shortcut");
  record({kKeyLeftControl, kKeyLeftAlt, kKeyK});
  EXPECT_EQ(statusName(), "Try it here");
}

TEST_F(ShortcutWindowTest, AShortcutThatIsHeldForAWhileLightsUpToo) {
  open(controlAltD());
  keyboard.press({kKeyLeftControl, kKeyLeftAlt, kKeyD});
  QTest::qWait(300);  // simulates the user, while the window keeps running
  keyboard.release({kKeyD, kKeyLeftAlt, kKeyLeftControl});
  EXPECT_TRUE(becomesTrue([this] { return isLit(); }));
  EXPECT_TRUE(window->isActiveWindow());
}

TEST_F(ShortcutWindowTest, ASecondRecordingOfTheSameShortcutLightsUpToo) {
  open(controlAltD());
  for (int i = 0; i < 2; ++i) {
    record({kKeyLeftControl, kKeyLeftAlt, kKeyD});
    useShortcut();
    EXPECT_TRUE(becomesTrue([this] { return isLit(); })) << i;
  }
}

TEST_F(ShortcutWindowTest, AnotherShortcutGivesTheFirstOneBack) {
  open(controlAltD());
  record({kKeyLeftControl, kKeyLeftAlt, kKeyK});
  EXPECT_TRUE(others.isFree(kKeyD, kControlAlt));
  EXPECT_FALSE(others.isFree(kKeyK, kControlAlt));
}

TEST_F(ShortcutWindowTest, WhatAnotherProgramHoldsIsAWarningAndCanStillBeAccepted) {
  ASSERT_TRUE(others.grab(kKeyD, kControlAlt));
  open();
  record({kKeyLeftControl, kKeyLeftAlt, kKeyD});
  EXPECT_EQ(statusName(), "Another program holds this shortcut");
  EXPECT_EQ(status()->kind(), StatusPanel::Kind::kWarning);
  EXPECT_THAT(status()->accessibleDescription().toStdString(), testing::HasSubstr("Seldial"));
  EXPECT_TRUE(canAccept()) << "it may be Seldial that holds it";
  record({kKeyLeftControl, kKeyLeftAlt, kKeyK});
  EXPECT_EQ(statusName(), "Try it here");
}

TEST_F(ShortcutWindowTest, SeldialsOwnShortcutIsNotAWarningAndCanBeTried) {
  ASSERT_TRUE(others.grab(kKeyD, kControlAlt));
  ASSERT_TRUE(others.grab(kKeyK, kControlAlt));
  std::function<void()> use;
  ours = {[](const HotKey& hotKey) { return hotKey == controlAltD(); },
          [&use](std::function<void()> used) {
            use = std::move(used);
            return std::make_shared<int>();
          }};
  open(controlAltD());
  EXPECT_EQ(statusName(), "Seldial uses this shortcut");
  EXPECT_EQ(status()->kind(), StatusPanel::Kind::kPlain);
  EXPECT_TRUE(canAccept());
  std::thread(use).join();
  EXPECT_TRUE(becomesTrue([this] { return isLit(); }));
  EXPECT_TRUE(says("Seldial uses this shortcut"));
  const auto late = use;
  record({kKeyLeftControl, kKeyLeftAlt, kKeyK});
  EXPECT_EQ(statusName(), "Another program holds this shortcut");
  late();
  QCoreApplication::processEvents();
  EXPECT_FALSE(isLit()) << "that shortcut is not tried any more";
}

TEST_F(ShortcutWindowTest, WhatTheWindowManagerHoldsIsRecordedAndAWarning) {
  open();
  record({kKeyLeftAlt, kKeyF4});
  EXPECT_EQ(shortcutText(), "Alt + F4");
  EXPECT_EQ(statusName(), "Another program holds this shortcut");
  EXPECT_TRUE(window->isVisible());
}

TEST_F(ShortcutWindowTest, ModifierKeysAloneAreExplainedAndCannotBeAccepted) {
  open();
  record({kKeyLeftControl});
  EXPECT_EQ(field()->text(), QStringLiteral("⌃"));
  EXPECT_EQ(statusName(), "One key is missing");
  EXPECT_FALSE(canAccept());
  EXPECT_EQ(focused(), "record");
}

TEST_F(ShortcutWindowTest, TheCopyKeystrokeIsExplainedAndCannotBeAccepted) {
  open();
  record({kKeyLeftControl, kKeyInsert});
  EXPECT_EQ(shortcutText(), "Ctrl + Insert");
  EXPECT_EQ(statusName(), "This desktop cannot use it");
  EXPECT_FALSE(canAccept());
}

TEST_F(ShortcutWindowTest, TheRecordingLeadsOnToWhatTheNewShortcutAllows) {
  open();
  record({kKeyLeftControl, kKeyInsert});
  EXPECT_EQ(focused(), "record");
  record({kKeyLeftControl, kKeyLeftAlt, kKeyD});
  EXPECT_EQ(focused(), "accept");
  record({kKeyLeftControl, kKeyInsert});
  EXPECT_EQ(focused(), "record");
  EXPECT_EQ(statusName(), "This desktop cannot use it");
}

TEST_F(ShortcutWindowTest, AcceptingHandsTheCommandOver) {
  open();
  record({kKeyLeftControl, kKeyLeftAlt, kKeyD});
  control<QSpinBox>("delay")->setValue(65535);
  press({kKeyReturn});
  ASSERT_TRUE(becomesTrue([this] { return !window->isVisible(); }));
  EXPECT_EQ(window->result(), QDialog::Accepted);
  EXPECT_THAT(commands,
              ElementsAre(R"({"command":"SetHotKey","modifierAlt":true,"modifierCommand":false,)"
                          R"("modifierCtrl":true,"modifierShift":false,"readdelay":65535,)"
                          R"("virtualkey":2})"));
}

TEST_F(ShortcutWindowTest, RecordingRequestsNoKeymapAgain) {
  open();
  record({kKeyLeftControl, kKeyLeftAlt, kKeyK});
  const int requests = keymapRequests();
  record({kKeyLeftControl, kKeyLeftAlt, kKeyD});
  EXPECT_EQ(control<QLabel>("shortcut-text")->text(), QStringLiteral("Ctrl + Alt + D"));
  EXPECT_EQ(keymapRequests(), requests);
}

TEST_F(ShortcutWindowTest, TheDelayIsFrom0To65535) {
  open();
  const auto* const delay = control<QSpinBox>("delay");
  EXPECT_EQ(delay->value(), 500);
  EXPECT_EQ(delay->minimum(), 0);
  EXPECT_EQ(delay->maximum(), 65535);
}

TEST_F(ShortcutWindowTest, WhoeverIsHandedTheCommandFindsTheShortcutFree) {
  bool isFree = false;
  ShortcutWindow own(
      QtDesktop::shared().ports().keyboard(),
      [&](const HotKey&, std::uint16_t) {
        isFree = others.isFree(kKeyD, kControlAlt);
        return std::optional<std::string>();
      },
      QStringLiteral("Use"));
  own.begin(controlAltD(), 500);
  ASSERT_TRUE(activate(own));
  EXPECT_FALSE(others.isFree(kKeyD, kControlAlt));
  own.accept();
  EXPECT_TRUE(isFree);
  EXPECT_TRUE(others.isFree(kKeyD, kControlAlt));
}

TEST_F(ShortcutWindowTest, AFailureIsShownAndTheWindowStaysOpen) {
  open(controlAltD());
  deliveryError = "nobody listens";
  control<QPushButton>("accept")->click();
  EXPECT_TRUE(window->isVisible());
  EXPECT_EQ(statusName(), "The shortcut was not handed over");
  EXPECT_EQ(status()->accessibleDescription(), QStringLiteral("nobody listens"));
  useShortcut();
  EXPECT_TRUE(becomesTrue([this] { return isLit(); })) << "it can be tried out again";
  deliveryError.reset();
  control<QPushButton>("accept")->click();
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(commands.size(), 2U);
}

TEST_F(ShortcutWindowTest, AFailureIsForgottenOnceSomethingElseIsRecorded) {
  open(controlAltD());
  deliveryError = "nobody listens";
  control<QPushButton>("accept")->click();
  record({kKeyLeftControl, kKeyLeftAlt, kKeyK});
  EXPECT_EQ(statusName(), "Try it here");
}

TEST_F(ShortcutWindowTest, AWindowThatIsNotActiveHoldsNothing) {
  open(controlAltD());
  EXPECT_FALSE(others.isFree(kKeyD, kControlAlt));
  {
    const XClient other(QtDesktop::shared().server.display());
    ASSERT_TRUE(becomesTrue([this] { return !window->isActiveWindow(); }));
    EXPECT_TRUE(others.isFree(kKeyD, kControlAlt));
  }
  ASSERT_TRUE(activate(*window));
  EXPECT_FALSE(others.isFree(kKeyD, kControlAlt));
}

TEST_F(ShortcutWindowTest, AWindowThatRecordsHoldsNothing) {
  open(controlAltD());
  control<QPushButton>("record")->click();
  EXPECT_TRUE(others.isFree(kKeyD, kControlAlt));
  keyboard.tap(kKeyEscape);
  ASSERT_TRUE(becomesTrue([this] { return !field()->isEditing(); }));
  EXPECT_FALSE(others.isFree(kKeyD, kControlAlt));
}

TEST_F(ShortcutWindowTest, AClosedWindowHoldsNothing) {
  open(controlAltD());
  window.reset();
  EXPECT_TRUE(others.isFree(kKeyD, kControlAlt));
}

TEST_F(ShortcutWindowTest, EscapeBringsTheOldShortcutBackAndTheNextOneCancels) {
  open(controlAltD());
  record({kKeyLeftControl, kKeyLeftAlt, kKeyK});
  control<QPushButton>("record")->click();
  press({kKeyLeftControl, kKeyQ});
  keyboard.tap(kKeyEscape);
  ASSERT_TRUE(becomesTrue([this] { return !field()->isEditing(); }));
  EXPECT_EQ(shortcutText(), "Ctrl + Alt + K");
  EXPECT_TRUE(window->isVisible());
  keyboard.tap(kKeyEscape);
  ASSERT_TRUE(becomesTrue([this] { return !window->isVisible(); }));
  EXPECT_EQ(window->result(), QDialog::Rejected);
  EXPECT_THAT(commands, ElementsAre());
}

TEST_F(ShortcutWindowTest, ClearingLeavesNothingToAccept) {
  open(controlAltD());
  control<QPushButton>("clear")->click();
  EXPECT_EQ(field()->text(), QString());
  EXPECT_EQ(shortcutText(), "No shortcut yet");
  EXPECT_FALSE(canAccept());
  EXPECT_TRUE(others.isFree(kKeyD, kControlAlt));
}

TEST_F(ShortcutWindowTest, ClearingWhileThePanelIsLitPutsItOut) {
  open(controlAltD());
  useShortcut();
  ASSERT_TRUE(becomesTrue([this] { return isLit(); }));
  control<QPushButton>("clear")->click();
  EXPECT_FALSE(isLit());
}

TEST_F(ShortcutWindowTest, TheTabKeyVisitsEveryControlAndIsNeverCaught) {
  open(controlAltD());
  std::vector<std::string> visited;
  for (int i = 0; i < 5; ++i) {
    const auto* const before = window->focusWidget();
    keyboard.tap(kKeyTab);
    ASSERT_TRUE(becomesTrue([&] { return window->focusWidget() != before; }));
    visited.push_back(focused());
    EXPECT_FALSE(field()->isEditing());
  }
  EXPECT_THAT(visited, ElementsAre("cancel", "record", "clear", "delay", "accept"));
}

TEST_F(ShortcutWindowTest, TheWholeWayByKeyboardAlone) {
  open();
  keyboard.tap(kKeySpace);  // on "Record"
  ASSERT_TRUE(becomesTrue([this] { return field()->isEditing(); }));
  useShortcut();
  keyboard.tap(kKeyReturn);
  ASSERT_TRUE(becomesTrue([this] { return !field()->isEditing(); }));
  press({kKeyLeftAlt, 28});  // Alt+T, the delay
  ASSERT_TRUE(becomesTrue([this] { return focused() == "delay"; }));
  press({kKeyLeftControl, kKeyA});
  press({16});  // 7
  ASSERT_TRUE(becomesTrue([this] { return control<QSpinBox>("delay")->value() == 7; }));
  press({kKeyLeftAlt, 27});  // Alt+R
  ASSERT_TRUE(becomesTrue([this] { return field()->isEditing(); }));
  keyboard.tap(kKeyEscape);
  keyboard.tap(kKeyReturn);
  ASSERT_TRUE(becomesTrue([this] { return !window->isVisible(); }));
  ASSERT_EQ(commands.size(), 1U);
  EXPECT_THAT(commands.front(), testing::HasSubstr(R"("readdelay":7,"virtualkey":2)"));
}

TEST_F(ShortcutWindowTest, AReturnThatIsHeldEndsTheRecordingAndAcceptsNothing) {
  open();
  control<QPushButton>("record")->click();
  useShortcut();
  keyboard.press(kKeyReturn);
  ASSERT_TRUE(becomesTrue([this] { return !field()->isEditing(); }));
  const KeyCounter keys(*control<QWidget>("accept"));
  QTest::qWait(900);  // it repeats after 660 ms, while the window keeps running
  keyboard.release(kKeyReturn);
  ASSERT_TRUE(becomesTrue([&] { return keys.releases() > 0; }));
  EXPECT_TRUE(window->isVisible());
  keyboard.tap(kKeyReturn);
  EXPECT_TRUE(becomesTrue([this] { return !window->isVisible(); }));
}

TEST_F(ShortcutWindowTest, EveryControlHasAnAccessibleNameAndDescription) {
  open(controlAltD());
  for (const char* const name :
       {"shortcut", "record", "clear", "delay", "status", "accept", "cancel"}) {
    auto* const accessible = QAccessible::queryAccessibleInterface(control<QWidget>(name));
    ASSERT_NE(accessible, nullptr) << name;
    EXPECT_FALSE(accessible->text(QAccessible::Name).isEmpty()) << name;
    EXPECT_FALSE(accessible->text(QAccessible::Description).isEmpty()) << name;
  }
  EXPECT_EQ(field()->accessibleDescription(), QStringLiteral("Ctrl + Alt + D"));
}

TEST_F(ShortcutWindowTest, FromRightToLeftTheControlsAreMirroredAndTheGlyphsAreNot) {
  QGuiApplication::setLayoutDirection(Qt::RightToLeft);
  open(controlAltD());
  QCoreApplication::processEvents();
  EXPECT_LT(control<QWidget>("record")->x(), control<QWidget>("shortcut-text")->x());
  EXPECT_EQ(field()->layoutDirection(), Qt::LeftToRight);
  QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}

}  // namespace
}  // namespace seldial
