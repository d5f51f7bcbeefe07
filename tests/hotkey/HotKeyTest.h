// A new centre for each test, on a port that the test controls.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "hotkey/QKHotKey.h"
#include "hotkey/QKHotKeyCenter.h"
#include "platform/VirtualKeys.h"
#include "tests/support/PlatformDoubles.h"

namespace seldial {

inline constexpr std::uint16_t kKeyV = platform::kVK_ANSI_V;
inline constexpr std::uint16_t kKeyB = platform::kVK_ANSI_B;
inline constexpr std::uint64_t kCommand = platform::kModifierFlagCommand;
inline constexpr std::uint64_t kControl = platform::kModifierFlagControl;

class HotKeyTest : public testing::Test {
 protected:
  HotKeyTest() {
    QKHotKeyCenter::setHotKeyEvents(port);
    center = QKHotKeyCenter::sharedHotKeyCenter();
    center->init();
  }
  ~HotKeyTest() override {
    center->unregisterAllHotKeys();
    QKHotKeyCenter::setHotKeyEvents(nullptr);
  }

  /// A task that counts its calls.
  static QKHotKeyTask counting(int& calls) {
    return [&calls](const QKKeyEvent& /*event*/) { ++calls; };
  }

  const std::shared_ptr<tests::FakeHotKeyEvents> port = std::make_shared<tests::FakeHotKeyEvents>();
  std::shared_ptr<QKHotKeyCenter> center;
};

/// Implements one action and records its arguments.
class RecordingTarget final : public QKHotKeyTarget {
 public:
  explicit RecordingTarget(QKAction known) : known_(std::move(known)) {}

  [[nodiscard]] bool respondsTo(const QKAction& action) const override { return action == known_; }
  void perform(const QKAction& action, const QKKeyEvent& event, const QKObject& object) override {
    actions.push_back(action);
    events.push_back(event);
    objects.push_back(object);
  }
  [[nodiscard]] std::string description() const override { return "<Dialer>"; }

  std::vector<QKAction> actions;
  std::vector<QKKeyEvent> events;
  std::vector<QKObject> objects;

 private:
  QKAction known_;
};

}  // namespace seldial
