#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

namespace seldial {

/// Tasks from any thread, run one at a time on the thread that calls run(), in the order in which
/// they were posted. Held by everybody who posts, so that a thread which outlives main() does no
/// harm.
class MainThread {
 public:
  using Task = std::function<void()>;

  /// Any thread. A task posted after stop() is never run.
  void post(Task task);

  /// Runs tasks until one of them calls stop().
  void run();
  void stop();

 private:
  Task next();

  std::mutex mutex_;  ///< guards tasks_
  std::condition_variable posted_;
  std::deque<Task> tasks_;
  bool stopped_ = false;
};

}  // namespace seldial
