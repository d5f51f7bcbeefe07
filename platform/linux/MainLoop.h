// The main loop of the Linux ports: tasks from any thread, readable descriptors, a wait.
#pragma once

#include <chrono>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/MainQueue.h"

namespace seldial::platform::linux_port {

/// Something with a descriptor that the main loop watches. Main thread only.
class EventSource {
 public:
  virtual ~EventSource() = default;

  [[nodiscard]] virtual int descriptor() const = 0;

  /// The descriptor has something to read, or has hung up.
  virtual void readable() = 0;

  /// The loop is about to wait: handle what was read from the descriptor earlier and kept, since
  /// no readable() will come for it, and send what is still buffered.
  virtual void willWait() {}

  /// As willWait() and readable(), while the main thread is blocked on purpose (MainLoop::block):
  /// serve other programs, keep everything that is the application's own business for later.
  /// Called as the block begins and whenever there is something to read. False: do not call again
  /// during this block.
  virtual bool readableWhileBlocked() { return false; }
};

/// Made on the main thread, which alone runs it; async() and isMainThread() from any thread.
class MainLoop final : public MainQueue {
 public:
  /// Throws std::system_error when the system has no descriptor left.
  MainLoop();
  ~MainLoop() override;
  MainLoop(const MainLoop&) = delete;
  MainLoop& operator=(const MainLoop&) = delete;

  void async(Task task) override;
  [[nodiscard]] bool isMainThread() const override;

  /// Adds a source, not owned; it must outlive the loop or be removed.
  void watch(EventSource& source);
  void unwatch(EventSource& source);

  /// Serves tasks and sources until quit(); returns at once when it was called already.
  void run();

  /// Makes run() or serve() return after the task or source that is being served. Main thread.
  void quit();

  /// For a program whose main thread waits in another loop, a toolkit's: serves all that there is
  /// to be served and returns instead of waiting. Main thread; to be called whenever descriptor()
  /// is readable, and before each wait of that loop, since sources have something to do then.
  void serve();

  /// Readable when there is something to serve; not to be read from.
  [[nodiscard]] int descriptor() const { return epoll_; }

  /// Blocks for `duration`; no task runs, sources get readableWhileBlocked().
  void block(std::chrono::microseconds duration);

 private:
  void runTasks();
  void announceWait();
  int serveSources(int timeout);
  bool nothingToDo();

  const std::thread::id mainThread_;
  const int wakeUp_;  ///< an eventfd that async() signals
  const int epoll_;   ///< watches wakeUp_ and the sources
  bool quit_ = false;
  std::vector<EventSource*> sources_;

  std::mutex mutex_;         ///< guards the two below, which any thread reaches
  std::vector<Task> tasks_;  ///< posted, not yet taken
  bool waiting_ = false;     ///< the loop will not look at tasks_ unless it is woken up
};

}  // namespace seldial::platform::linux_port
