// The centre of hot keys on a real X server.
#pragma once

#include <memory>
#include <vector>

#include "hotkey/QKHotKeyCenter.h"
#include "platform/VirtualKeys.h"
#include "tests/platform/x11/X11Test.h"

namespace seldial::platform::x11 {

/// Everything that concerns hot keys happens on the main thread, in onMain().
class HotKeyCenterTest : public X11Test {
 protected:
  static constexpr std::uint64_t kControlOption = kModifierFlagControl | kModifierFlagOption;

  template <class Task>
  auto onMain(Task task) {
    return port.call(std::move(task));
  }

  HotKeyCenterTest() {
    onMain([this] {
      QKHotKeyCenter::setHotKeyEvents(port.sharedHotKeys());
      center = QKHotKeyCenter::sharedHotKeyCenter();
      center->init();
    });
  }

  void TearDown() override {
    onMain([this] {
      kept.clear();
      center->unregisterAllHotKeys();
      QKHotKeyCenter::setHotKeyEvents(nullptr);
    });
    X11Test::TearDown();
  }

  /// Registers Control and Option with that key; each use adds its event to `uses`.
  std::shared_ptr<QKHotKey> add(std::uint16_t keyCode) {
    return center->registerHotKeyWithKeyCode(
        keyCode, kControlOption, [this](const QKKeyEvent& event) { uses.push_back(event); });
  }

  /// Presses Ctrl+Alt and that key as the user; returns the events of all uses so far.
  std::vector<QKKeyEvent> useKey(std::uint8_t key) {
    keyboard.press(kControlAltKeys);
    keyboard.tap(key);
    keyboard.release(kControlAltKeys);
    port.settle();
    return onMain([this] { return uses; });
  }

  std::shared_ptr<QKHotKeyCenter> center;
  std::vector<std::shared_ptr<QKHotKey>> kept;  ///< records that the test owns, main thread
  std::vector<QKKeyEvent> uses;                 ///< main thread
};

}  // namespace seldial::platform::x11
