// Doubles of the background queue, to be passed to the objects under test.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

#include "platform/BackgroundQueue.h"

namespace seldial::tests {

/// Keeps every task until the test runs it on its own thread. Any thread.
class ManualBackgroundQueue final : public platform::BackgroundQueue {
 public:
  struct Entry {
    std::chrono::nanoseconds delay{0};  ///< as requested
    Task task;
  };

  void async(Task task) override { after(std::chrono::nanoseconds::zero(), std::move(task)); }
  void after(std::chrono::nanoseconds delay, Task task) override {
    const std::lock_guard lock(mutex_);
    entries_.push_back({delay, std::move(task)});
  }

  [[nodiscard]] std::size_t size() const {
    const std::lock_guard lock(mutex_);
    return entries_.size();
  }

  /// Removes and returns the oldest task; an empty one if there is none.
  Entry take() {
    const std::lock_guard lock(mutex_);
    if (entries_.empty()) return {};
    Entry entry = std::move(entries_.front());
    entries_.pop_front();
    return entry;
  }

 private:
  mutable std::mutex mutex_;
  std::deque<Entry> entries_;
};

/// The system's queue, under the control of the test. `start` receives each task instead of
/// async(), on the thread that posted it, and may run() it, keep it, or do something first. The
/// test can also wait until all tasks have ended. Set `start` before the first task. Any thread.
class ControlledBackgroundQueue final : public platform::BackgroundQueue {
 public:
  ~ControlledBackgroundQueue() override { waitUntilIdle(); }

  void async(Task task) override { start(counted(std::move(task))); }
  void after(std::chrono::nanoseconds delay, Task task) override {
    platform::sharedBackgroundQueue()->after(delay, counted(std::move(task)));
  }

  /// Starts a task that `start` has received.
  void run(Task task) { platform::sharedBackgroundQueue()->async(std::move(task)); }

  /// Waits until every posted task has ended and been destroyed.
  void waitUntilIdle() {
    std::unique_lock lock(mutex_);
    idle_.wait(lock, [this] { return pending_ == 0; });
  }

  /// The number of tasks that were posted and have not ended.
  [[nodiscard]] int pending() {
    const std::lock_guard lock(mutex_);
    return pending_;
  }

  std::function<void(Task)> start = [this](Task task) { run(std::move(task)); };

 private:
  /// Counts a task as pending until it has run, or was dropped.
  class Pending {
   public:
    explicit Pending(ControlledBackgroundQueue& queue) : queue_(queue) {
      const std::lock_guard lock(queue_.mutex_);
      ++queue_.pending_;
    }
    ~Pending() {
      const std::lock_guard lock(queue_.mutex_);
      if (--queue_.pending_ == 0) queue_.idle_.notify_all();
    }
    Pending(const Pending&) = delete;
    Pending& operator=(const Pending&) = delete;

   private:
    ControlledBackgroundQueue& queue_;
  };

  Task counted(Task task) {
    // The task is declared after the count, so that it is destroyed first.
    struct Counted {
      std::shared_ptr<Pending> pending;
      Task task;
    };
    auto counted = std::make_shared<Counted>();
    counted->pending = std::make_shared<Pending>(*this);
    counted->task = std::move(task);
    return [counted] { counted->task(); };
  }

  std::mutex mutex_;
  std::condition_variable idle_;
  int pending_ = 0;
};

}  // namespace seldial::tests
