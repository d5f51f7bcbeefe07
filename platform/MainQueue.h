#pragma once

#include <functional>

namespace seldial::platform {

/// Runs tasks one at a time, in the order in which they were posted, on the main thread.
class MainQueue {
 public:
  /// What is posted.
  using Task = std::function<void()>;

  virtual ~MainQueue() = default;

  /// Posts `task` and returns at once; any thread. Tasks that are still waiting when the
  /// application ends are dropped.
  virtual void async(Task task) = 0;

  /// Whether the calling thread is the main thread; any thread.
  [[nodiscard]] virtual bool isMainThread() const = 0;
};

}  // namespace seldial::platform
