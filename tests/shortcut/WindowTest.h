#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QPushButton>
#include <QSpinBox>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/VirtualKeys.h"
#include "platform/x11/Desktop.h"
#include "shortcut/ShortcutWindow.h"
#include "tests/hotkey/qt/QtDesktop.h"

namespace seldial {

using namespace tests;  // NOLINT: keys and keyboards by their short names

/// The window on a private desktop; records the commands that it delivers.
class WindowTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    platform::x11::reserveCopyKeystroke(*QtDesktop::shared().ports().hotKeyEvents());
  }
  void TearDown() override {
    window.reset();
    EXPECT_EQ(keyboard.down(), std::set<std::uint8_t>{});
  }

  void open(const std::optional<HotKey>& hotKey = {}, std::uint16_t delay = 500) {
    window = std::make_unique<ShortcutWindow>(
        QtDesktop::shared().ports().keyboard(),
        [this](const HotKey& accepted, std::uint16_t acceptedDelay) {
          commands.push_back(setHotKeyCommand(accepted, acceptedDelay));
          return deliveryError;
        },
        QCoreApplication::translate("Delivery", "&Use this shortcut"));
    window->setSeldialHotKey(ours);
    window->begin(hotKey, delay);
    ASSERT_TRUE(activate(*window));
  }

  /// Records a combination that the user presses, and accepts it with Return.
  void record(const std::vector<std::uint8_t>& keys) {
    control<QPushButton>("record")->click();
    ASSERT_TRUE(field()->isEditing());
    press(keys);
    keyboard.tap(kKeyReturn);
    ASSERT_TRUE(becomesTrue([this] { return !field()->isEditing(); }));
  }

  template <class Widget>
  [[nodiscard]] Widget* control(const char* name) const {
    return static_cast<Widget*>(window->findChild<QWidget*>(QLatin1String(name)));
  }
  [[nodiscard]] QKHotKeyTextField* field() const { return control<QKHotKeyTextField>("shortcut"); }
  [[nodiscard]] StatusPanel* status() const { return control<StatusPanel>("status"); }
  [[nodiscard]] std::string statusName() const { return status()->accessibleName().toStdString(); }
  [[nodiscard]] bool isLit() const { return status()->kind() == StatusPanel::Kind::kLit; }

  /// Waits until the panel shows that headline.
  [[nodiscard]] bool says(const std::string& headline) const {
    return becomesTrue([&] { return statusName() == headline; });
  }

  static HotKey controlAltD() {
    return {platform::kVK_ANSI_D, platform::kModifierFlagControl | platform::kModifierFlagOption};
  }

  Keyboard& keyboard = QtDesktop::shared().keyboard;
  ShortcutWindow::SeldialHotKey ours;
  std::optional<std::string> deliveryError;  ///< the error of the next deliveries
  std::vector<std::string> commands;         ///< the delivered commands
  std::unique_ptr<ShortcutWindow> window;
};

}  // namespace seldial
