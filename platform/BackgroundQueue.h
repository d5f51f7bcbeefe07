#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace seldial::platform {

/// The shared concurrent background queue: tasks run on threads of their own, in no order.
/// A task that blocks, for ever even, never keeps another one waiting.
class BackgroundQueue {
 public:
  using Task = std::function<void()>;

  virtual ~BackgroundQueue() = default;

  /// Starts `task` on a background thread and returns at once; any thread.
  virtual void async(Task task) = 0;

  /// Starts `task` on a background thread once `delay` has passed; any thread.
  virtual void after(std::chrono::nanoseconds delay, Task task) = 0;
};

/// The system's own queue, made by the port that the program is linked with.
std::shared_ptr<BackgroundQueue> makeSystemBackgroundQueue();

/// The queue of this process: the installed one (see Installed.h), otherwise the system's own,
/// made on first use and never destroyed, since its threads may outlive main().
BackgroundQueue& sharedBackgroundQueue();

}  // namespace seldial::platform
