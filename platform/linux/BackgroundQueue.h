// The shared background queue on Linux: threads that are made when a task needs one, wait a while
// for the next task, and leave.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <vector>

#include "platform/BackgroundQueue.h"

namespace seldial::platform::linux_port {

/// Every member function: any thread. Never destroyed while a thread of its own lives.
class ThreadPerTaskQueue final : public BackgroundQueue {
 public:
  void async(Task task) override;
  void after(std::chrono::nanoseconds delay, Task task) override;

 private:
  /// A thread without a task. It lives on that thread's stack.
  struct IdleThread {
    std::condition_variable wakeUp;
    Task task;  ///< empty until async() hands one over
  };

  static void* threadMain(void* queue);
  void runTasks();
  Task nextTask();
  bool startThread();

  std::mutex mutex_;  ///< guards everything below
  /// Threads that wait for a task; the last one to become idle is the first to get one, so that
  /// the others can leave, and because its memory is still in the cache.
  std::vector<IdleThread*> idle_;
  std::deque<Task> waiting_;  ///< tasks for which no thread could be made; normally empty
};

}  // namespace seldial::platform::linux_port
