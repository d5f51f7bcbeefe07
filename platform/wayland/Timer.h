// A delayed task on the main loop.
#pragma once

#include <chrono>
#include <functional>

#include "platform/linux/MainLoop.h"

namespace seldial::platform::wayland {

/// One task at a time. Main thread only.
class Timer final : public linux_port::EventSource {
 public:
  /// Throws std::system_error when the system has no descriptor left.
  explicit Timer(linux_port::MainLoop& loop);
  ~Timer() override;
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;

  /// Runs `task` after `delay`, in place of a task that has not run yet. It may start the timer.
  void start(std::chrono::milliseconds delay, std::function<void()> task);
  void stop();

  [[nodiscard]] int descriptor() const override { return timer_; }
  void readable() override;

 private:
  linux_port::MainLoop& loop_;
  const int timer_;
  std::function<void()> task_;
};

}  // namespace seldial::platform::wayland
