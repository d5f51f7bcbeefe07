// The ports of the X11 desktop, running on a main loop of their own, as the program runs them.
#pragma once

#include <chrono>
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

#include "platform/HotKeyEvents.h"
#include "platform/linux/MainLoop.h"
#include "platform/x11/Session.h"
#include "platform/x11/copy/Clipboard.h"
#include "tests/support/desktop/XServer.h"

namespace seldial::platform::x11 {

/// The "main thread" is a thread of its own, so that the test can play the user while the program
/// is busy.
class X11Port {
 public:
  /// Connects to the display; returns once that has succeeded or failed.
  explicit X11Port(const std::string& display);
  /// The orderly end of the program.
  ~X11Port();
  X11Port(const X11Port&) = delete;
  X11Port& operator=(const X11Port&) = delete;

  [[nodiscard]] bool connected() const { return session_ != nullptr; }

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

  /// From now on a release of the hot key copies the selection, waits and reads the text.
  void dialOnRelease(std::chrono::milliseconds delay);
  /// The same at once. Main thread.
  std::optional<std::string> dial(std::chrono::milliseconds delay);
  void clear();
  std::optional<std::string> text();

  /// Returns once everything that the server has sent us so far has been acted on.
  void settle();

  [[nodiscard]] std::vector<HotKeyReleased> releases() const;
  void waitForReleases(std::size_t count) const;
  /// What each dial found, in order.
  [[nodiscard]] std::vector<std::optional<std::string>> dialled() const;
  void waitForDials(std::size_t count) const;
  /// `blocked` is called on the main thread whenever a dial is about to wait.
  void whenBlocking(std::function<void()> blocked);
  [[nodiscard]] int connectionsLost() const;
  void waitForLoss() const;

  linux_port::MainLoop& loop() { return *loop_; }
  /// The ports; main thread.
  Session& session() { return *session_; }
  HotKeyEvents& hotKeys() { return *hotKeys_; }
  Clipboard& clipboard() { return *clipboard_; }
  /// Destroys the clipboard: the test types the copy keystroke itself.
  void dropClipboard() { clipboard_.reset(); }
  std::shared_ptr<HotKeyEvents> sharedHotKeys() { return hotKeys_; }

 private:
  void run(std::promise<void>& ready);
  void released(const HotKeyReleased& event);
  void waitFor(const std::function<bool()>& condition, const char* what) const;

  std::shared_ptr<linux_port::MainLoop> loop_;
  std::shared_ptr<Session> session_;
  std::shared_ptr<HotKeyEvents> hotKeys_;
  std::shared_ptr<Clipboard> clipboard_;

  mutable std::mutex mutex_;  ///< guards everything below
  mutable std::condition_variable changed_;
  std::optional<std::chrono::milliseconds> delay_;
  std::function<void()> blocking_ = [] {};
  std::vector<HotKeyReleased> releases_;
  std::vector<std::optional<std::string>> dialled_;
  int connectionsLost_ = 0;

  std::thread thread_;
};

}  // namespace seldial::platform::x11
