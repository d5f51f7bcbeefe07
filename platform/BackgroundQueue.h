// The background queue: where tasks run that must not block the main thread.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace seldial::platform {

/// A concurrent queue: tasks run on background threads, in no order. A task may block for as long
/// as it likes: no other task ever waits for it.
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

/// The process's queue, as the system's port makes it. Created on first use and never destroyed,
/// since its threads may outlive main(). Any thread.
const std::shared_ptr<BackgroundQueue>& sharedBackgroundQueue();

}  // namespace seldial::platform
