// The background queue on Linux: a task for which no thread is idle starts one. An idle thread
// waits a while for the next task and then ends.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <vector>

#include "platform/BackgroundQueue.h"

namespace seldial::platform::linux_port {

/// Any thread. Must outlive its own threads, so it is never destroyed. If the system refuses a
/// thread, async() tries again for a second.
class ThreadPerTaskQueue final : public BackgroundQueue {
 public:
  void async(Task task) override;
  std::function<void()> asyncHeld(Task task) override;
  void after(std::chrono::nanoseconds delay, Task task) override;

 private:
  /// One thread of the queue. Shared with the caller of async() that wakes it: the thread may end
  /// before that call does.
  struct Worker {
    std::condition_variable wakeUp;
    Task task;  ///< empty until async() sets it
  };

  static void* threadMain(void* queue);
  void runTasks();
  Task nextTask(const std::shared_ptr<Worker>& worker);
  std::shared_ptr<Worker> assign(Task& task);
  std::shared_ptr<Worker> takeIdle();
  bool startThread();

  std::mutex mutex_;  ///< guards everything below
  /// Threads without a task. The last one that became idle gets the next task: its memory is still
  /// cached, and the others can end.
  std::vector<std::shared_ptr<Worker>> idle_;
  std::deque<Task> waiting_;  ///< tasks whose thread has not started yet
};

/// Sets a function that each background thread of the process calls before it ends for lack of
/// tasks; none by default. Any thread.
void setBackgroundThreadEndAction(void (*action)());

}  // namespace seldial::platform::linux_port
