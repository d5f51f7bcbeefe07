#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QPushButton>
#include <QVBoxLayout>

#include "hotkey/qt/QKHotKeyTextField.h"
#include "platform/VirtualKeys.h"
#include "tests/hotkey/qt/QtDesktop.h"

namespace seldial {

using namespace tests;     // NOLINT: keys and keyboards by their short names
using namespace platform;  // NOLINT: modifier flags by their short names
using testing::ElementsAre;

/// A window with a field between two buttons; the second button has the focus.
class FieldTest : public testing::Test {
 protected:
  explicit FieldTest(const KeyboardPorts& ports = QtDesktop::shared().ports().keyboard())
      : field(ports, &window) {
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

  /// Whether `times` actions arrive.
  bool acts(std::size_t times) {
    return becomesTrue([&] { return shown.size() >= times; });
  }

  static std::shared_ptr<QKHotKey> record(std::uint16_t keyCode, std::uint64_t flags,
                                          QKHotKeyTask task = nullptr) {
    return QKHotKey::hotKeyWithKeyCode(keyCode, flags, std::move(task));
  }

  Keyboard& keyboard = QtDesktop::shared().keyboard;
  QWidget window;
  QPushButton before{&window};
  QKHotKeyTextField field;
  QPushButton after{&window};
  std::vector<std::string> shown;  ///< the text at each action
  int clicks = 0;
};

}  // namespace seldial
