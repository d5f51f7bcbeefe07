// The ports of a desktop, running on their own main loop, as in the program.
#pragma once

#include <condition_variable>
#include <cstdint>
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

namespace seldial::platform {

/// The "main thread" is a separate thread, so that the test can act as the user while the program
/// is busy. It records the releases of hot keys and, if requested, dials on each.
class RunningPort {
 public:
  RunningPort(const RunningPort&) = delete;
  RunningPort& operator=(const RunningPort&) = delete;

  [[nodiscard]] bool connected() const { return ports_.hotKeyEvents != nullptr; }

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

  /// From now on a release of the hot key copies the selection; `wait` is called on the main thread
  /// before the text is read.
  void dialOnRelease(std::function<void()> wait);
  /// Dials at once and returns the text. Main thread.
  std::optional<std::string> dial(const std::function<void()>& wait);

  [[nodiscard]] std::vector<HotKeyReleased> releases() const;
  void waitForReleases(std::size_t count) const;
  /// The results of all dials, in order.
  [[nodiscard]] std::vector<std::optional<std::string>> dialled() const;
  void waitForDials(std::size_t count) const;
  [[nodiscard]] int connectionsLost() const;
  void waitForLoss() const;

  linux_port::MainLoop& loop() { return *loop_; }
  /// The ports; main thread.
  [[nodiscard]] HotKeyEvents& hotKeys() const { return *ports_.hotKeyEvents; }
  [[nodiscard]] Clipboard& clipboard() const { return *ports_.clipboard; }
  std::shared_ptr<HotKeyEvents> sharedHotKeys() { return ports_.hotKeyEvents; }
  /// Destroys the clipboard: the test types the copy keystroke itself.
  void dropClipboard() { ports_.clipboard.reset(); }

 protected:
  /// Called on the main thread; without hot key events there is no desktop.
  using Connect = std::function<DesktopPorts(const std::shared_ptr<linux_port::MainLoop>& loop,
                                             std::function<void()> connectionLost)>;

  RunningPort() = default;
  ~RunningPort() = default;

  /// Starts the main thread; returns once `connect` has.
  void start(Connect connect);
  /// Ends the program cleanly. The derived class calls it before its members are destroyed.
  void end();

 private:
  void run(const Connect& connect, std::promise<void> ready);
  void lost();
  void released(const HotKeyReleased& event);
  void waitFor(const std::function<bool()>& condition, const char* what) const;

  std::shared_ptr<linux_port::MainLoop> loop_;
  DesktopPorts ports_;

  mutable std::mutex mutex_;  ///< guards everything below
  mutable std::condition_variable changed_;
  std::function<void()> wait_;
  std::vector<HotKeyReleased> releases_;
  std::vector<std::optional<std::string>> dialled_;
  int connectionsLost_ = 0;

  std::thread thread_;
};

}  // namespace seldial::platform
