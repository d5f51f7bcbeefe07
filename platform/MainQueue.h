#pragma once

#include <functional>

namespace seldial::platform {

/// Runs tasks on the main thread, one at a time, in the order in which they were posted.
class MainQueue {
 public:
  /// What the queue runs.
  using Task = std::function<void()>;

  virtual ~MainQueue() = default;

  /// Posts `task` and returns at once. Tasks that still wait when the application ends never run.
  /// Any thread.
  virtual void async(Task task) = 0;

  /// Whether the calling thread is the main thread. Any thread.
  [[nodiscard]] virtual bool isMainThread() const = 0;
};

}  // namespace seldial::platform
