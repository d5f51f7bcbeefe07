// The main loop on Linux, which runs tasks posted from any thread and serves readable descriptors,
// and its timers.
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/Ports.h"

namespace seldial::platform::linux_port {

/// A descriptor that the main loop watches. Main thread only.
class EventSource {
 public:
  virtual ~EventSource() = default;

  [[nodiscard]] virtual int descriptor() const = 0;

  /// Called when the descriptor has data to read or has hung up.
  virtual void readable() = 0;

  /// Called before the loop waits: handle data that was already read from the descriptor and
  /// buffered, for which no readable() will come, and send what is still buffered.
  virtual void willWait() {}

  /// Called instead of willWait() and readable() during MainLoop::block(): answer other programs,
  /// but keep the application's own events for later. Called when the block begins and whenever
  /// there is data to read. Return false to get no more calls during this block.
  virtual bool readableWhileBlocked() { return false; }
};

/// Constructed and run on the main thread; async(), isMainThread() and interrupt() may be called on
/// any thread.
class MainLoop final : public MainQueue {
 public:
  /// Throws std::system_error when the system has no descriptor left.
  MainLoop();
  ~MainLoop() override;
  MainLoop(const MainLoop&) = delete;
  MainLoop& operator=(const MainLoop&) = delete;

  void async(Task task) override;
  void asyncBeforeNext(Task task) override;
  [[nodiscard]] bool isMainThread() const override;

  /// Adds a source, which is not owned: it must outlive the loop or be removed.
  void watch(EventSource& source);
  void unwatch(EventSource& source);

  /// Serves tasks and sources until quit(); returns at once if that was called before.
  void run();

  /// Makes run() or serve() return after the current task or source. Main thread.
  void quit();

  /// For a program whose main thread runs a toolkit's loop: serves everything that is ready and
  /// returns without waiting. Call it whenever descriptor() is readable, and before each wait of
  /// that loop, so that the sources get willWait(). Main thread.
  void serve();

  /// Readable when there is something to serve. Do not read from it.
  [[nodiscard]] int descriptor() const { return epoll_; }

  /// Blocks for `duration` or until interrupt(): no task runs, sources get readableWhileBlocked().
  void block(std::chrono::microseconds duration);

  /// Calls quit() and ends the current block() and every later one. Other waits of the main thread
  /// must poll interruption(), so that they end too. Any thread.
  void interrupt();
  [[nodiscard]] bool interrupted() const { return interrupted_; }

  /// False while something has to be undone before the process ends, such as keys that are held
  /// down. True at first. Set on the main thread, read on any thread.
  void setMayEnd(bool mayEnd) { mayEnd_ = mayEnd; }
  [[nodiscard]] bool mayEnd() const { return mayEnd_; }

  /// Readable once interrupt() has been called. Do not read from it.
  [[nodiscard]] int interruption() const { return interruption_; }

 private:
  void runTasks();
  void announceWait();
  int serveSources(int timeout);
  bool nothingToDo();

  const std::thread::id mainThread_;
  const int wakeUp_;        ///< an eventfd that async() signals
  const int epoll_;         ///< watches wakeUp_ and the sources
  const int interruption_;  ///< an eventfd
  std::atomic<bool> quit_{false};
  std::atomic<bool> interrupted_{false};
  std::atomic<bool> mayEnd_{true};
  std::vector<EventSource*> sources_;

  std::mutex mutex_;         ///< guards the members below
  std::vector<Task> tasks_;  ///< posted, not yet run
  bool waiting_ = false;     ///< the loop must be woken up to run tasks_
};

/// A delayed task on a main loop. One task at a time. Main thread only.
class Timer final : public EventSource {
 public:
  /// Throws std::system_error when the system has no descriptor left.
  explicit Timer(MainLoop& loop);
  ~Timer() override;
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;

  /// Runs `task` after `delay`, in place of a task that has not run yet. It may start the timer.
  void start(std::chrono::milliseconds delay, std::function<void()> task);
  void stop();

  [[nodiscard]] int descriptor() const override { return timer_; }
  void readable() override;

 private:
  MainLoop& loop_;
  const int timer_;
  std::function<void()> task_;
};

}  // namespace seldial::platform::linux_port
