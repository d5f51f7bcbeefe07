// The ports of the X11 desktop, running.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "platform/x11/Desktop.h"
#include "platform/x11/Session.h"
#include "tests/platform/RunningPort.h"
#include "tests/support/desktop/XServer.h"

namespace seldial::platform::x11 {

class X11Port final : public RunningPort {
 public:
  /// Connects to the display; returns once that has succeeded or failed.
  explicit X11Port(const std::string& display);
  ~X11Port() { end(); }
  X11Port(const X11Port&) = delete;
  X11Port& operator=(const X11Port&) = delete;

  /// From now on a release of the hot key copies the selection, waits and reads the text.
  void dialOnRelease(std::chrono::milliseconds delay);
  /// Dials at once. Main thread.
  std::optional<std::string> dial(std::chrono::milliseconds delay);
  /// `blocked` is called on the main thread whenever a dial is about to wait.
  void whenBlocking(std::function<void()> blocked);

  void clear();
  std::optional<std::string> text();

  /// Returns once all events that the server has sent so far have been handled.
  void settle();

  Session& session() { return *session_; }

 private:
  void block(std::chrono::milliseconds delay);

  std::shared_ptr<Session> session_;
  std::mutex mutex_;
  std::function<void()> blocking_ = [] {};  ///< guarded by mutex_
};

}  // namespace seldial::platform::x11
