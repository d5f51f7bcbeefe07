// The background queue runs tasks that must not block the main thread.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace seldial::platform {

/// A concurrent queue: tasks run on background threads, in no order. A task may block for any time:
/// it never delays another task.
class BackgroundQueue {
 public:
  /// What the queue runs.
  using Task = std::function<void()>;

  virtual ~BackgroundQueue() = default;

  /// Starts `task` on a background thread and returns at once. Any thread.
  virtual void async(Task task) = 0;

  /// Starts `task` on a background thread once `delay` has passed. Any thread.
  virtual void after(std::chrono::nanoseconds delay, Task task) = 0;
};

/// The queue of the process, which the system's port provides. Created on first use and never
/// destroyed, because its threads may outlive main(). Any thread.
const std::shared_ptr<BackgroundQueue>& sharedBackgroundQueue();

}  // namespace seldial::platform
