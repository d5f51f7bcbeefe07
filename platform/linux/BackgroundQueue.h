// The shared background queue on Linux: threads that are made when a task needs one, wait a while
// for the next task, and leave.
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

/// Every member function: any thread. Never destroyed while a thread of its own lives.
class ThreadPerTaskQueue final : public BackgroundQueue {
 public:
  void async(Task task) override;
  void after(std::chrono::nanoseconds delay, Task task) override;

 private:
  /// Where a thread of this queue waits for its next task. Shared with the one that wakes it up,
  /// who may be slower than the thread.
  struct Seat {
    std::condition_variable wakeUp;
    Task task;  ///< empty until async() hands one over
  };

  static void* threadMain(void* queue);
  void runTasks();
  Task nextTask(const std::shared_ptr<Seat>& seat);
  std::shared_ptr<Seat> handOver(Task& task);
  bool startThread();

  std::mutex mutex_;  ///< guards everything below
  /// Threads that wait for a task; the last one to become idle is the first to get one, so that
  /// the others can leave, and because its memory is still in the cache.
  std::vector<std::shared_ptr<Seat>> idle_;
  std::deque<Task> waiting_;  ///< tasks for which no thread could be made; normally empty
};

}  // namespace seldial::platform::linux_port
