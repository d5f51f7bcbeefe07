// The background queue runs tasks that must not block the main thread.
#pragma once

#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <utility>

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

  /// Like async(), but `task` starts when the returned function is called, which must happen once.
  /// A queue can override it to save the wake-up of a thread that would only wait. Any thread.
  [[nodiscard]] virtual std::function<void()> asyncHeld(Task task) {
    const auto release = std::make_shared<std::promise<void>>();
    async([released = release->get_future().share(), task = std::move(task)] {
      released.wait();
      task();
    });
    return [release] { release->set_value(); };
  }

  /// Starts `task` on a background thread once `delay` has passed. Any thread.
  virtual void after(std::chrono::nanoseconds delay, Task task) = 0;
};

/// The queue of the process, which the system's port provides. Created on first use and never
/// destroyed, because its threads may outlive main(). Any thread.
const std::shared_ptr<BackgroundQueue>& sharedBackgroundQueue();

}  // namespace seldial::platform
