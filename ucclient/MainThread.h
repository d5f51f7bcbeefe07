#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

namespace seldial {

/// A queue of tasks from any thread, which run one at a time and in order on the thread that calls
/// run(). It is owned by everyone who posts, because their threads may outlive main().
class MainThread {
 public:
  using Task = std::function<void()>;

  /// Any thread. A task that has not run when stop() is called is destroyed without running.
  void post(Task task);

  /// Runs tasks until one of them calls stop().
  void run();
  void stop();

 private:
  Task next();

  std::mutex mutex_;  ///< guards the members below
  std::condition_variable posted_;
  std::deque<Task> tasks_;
  bool stopped_ = false;
};

/// From now on each SIGINT, SIGTERM or SIGHUP calls `received` on a separate thread. A SIGHUP that
/// is ignored, as under nohup, stays ignored. Call it while the process has one thread, because it
/// blocks the signals only in the calling thread and in threads started later.
void onTerminationSignals(std::function<void()> received);

}  // namespace seldial
