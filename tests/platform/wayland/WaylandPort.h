// The ports of a Wayland session, running on a main loop of their own, as the program runs them.
#pragma once

#include <gtest/gtest.h>

#include <condition_variable>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/Clipboard.h"
#include "platform/HotKeyEvents.h"
#include "platform/Ports.h"
#include "platform/linux/MainLoop.h"
#include "tests/support/wayland/Editor.h"
#include "tests/support/wayland/Sway.h"
#include "tests/support/wayland/UserKeyboard.h"

namespace seldial::platform::wayland {

/// The "main thread" is a thread of its own, so that the test can play the user meanwhile.
class WaylandPort {
 public:
  /// Connects to the compositor; returns once that has succeeded or failed.
  explicit WaylandPort(const tests::Sway& sway, tests::Sway::Ipc ipc = tests::Sway::Ipc::kTold);
  /// The orderly end of the program.
  ~WaylandPort();
  WaylandPort(const WaylandPort&) = delete;
  WaylandPort& operator=(const WaylandPort&) = delete;

  /// Runs `task` on the main thread and returns what it returns.
  template <class Task>
  auto call(Task task) {
    using Result = decltype(task());
    const auto packaged = std::make_shared<std::packaged_task<Result()>>(std::move(task));
    loop_->async([packaged] { (*packaged)(); });
    return packaged->get_future().get();
  }

  std::optional<HotKeyRef> registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                          std::uint32_t id = 1);
  void unregisterHotKey(HotKeyRef ref);
  [[nodiscard]] HotKeyEvents& hotKeys() const { return *ports_.hotKeyEvents; }

  /// From now on a release of the hot key copies the selection; `wait` is called on the main thread
  /// before the text is read.
  void dialOnRelease(std::function<void()> wait);

  void waitForReleases(std::size_t count) const;
  /// The ids of the released hot keys, in order.
  [[nodiscard]] std::vector<std::uint32_t> releases() const;
  void waitForDials(std::size_t count) const;
  /// What each dial found, in order.
  [[nodiscard]] std::vector<std::optional<std::string>> dialled() const;
  void waitForLoss() const;
  [[nodiscard]] int connectionsLost() const;

 private:
  void run(std::promise<void>& ready);
  void released(const HotKeyReleased& event);
  void waitFor(const std::function<bool()>& condition, const char* what) const;

  const std::string display_;
  std::shared_ptr<linux_port::MainLoop> loop_;
  DesktopPorts ports_;

  mutable std::mutex mutex_;  ///< guards everything below
  mutable std::condition_variable changed_;
  std::function<void()> wait_;
  std::vector<std::uint32_t> releases_;
  std::vector<std::optional<std::string>> dialled_;
  int connectionsLost_ = 0;

  std::thread thread_;
};

constexpr std::uint32_t kControlAlt = kHotKeyControl | kHotKeyOption;
const std::vector<unsigned> kControlAltKeys{KEY_LEFTCTRL, KEY_LEFTALT};

/// A compositor with a user's keyboard and the port.
class WaylandTest : public testing::Test {
 protected:
  explicit WaylandTest(const std::string& configuration = {}) : sway(configuration) {}

  void useHotKey() { keyboard.use(kControlAltKeys, KEY_D); }

  tests::Sway sway;
  tests::UserKeyboard keyboard{sway.display()};
  std::optional<WaylandPort> port{std::in_place, sway};
};

}  // namespace seldial::platform::wayland
