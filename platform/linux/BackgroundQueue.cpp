#include "platform/linux/BackgroundQueue.h"

#include <pthread.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <thread>
#include <utility>

#include "platform/Output.h"
#include "platform/System.h"

namespace seldial::platform {

const std::shared_ptr<BackgroundQueue>& sharedBackgroundQueue() {
  static const auto* const queue =
      new std::shared_ptr<BackgroundQueue>(std::make_shared<linux_port::ThreadPerTaskQueue>());
  return *queue;
}

namespace linux_port {
namespace {

/// How long an idle thread waits for a task before it ends.
constexpr std::chrono::seconds kIdleTime{2};

/// The stack of a background thread, in bytes. Only the part that is used takes memory.
constexpr std::size_t kStackSize = 512UL * 1024;

/// How often, and at what interval, async() tries to start a thread: for one second in total.
constexpr int kStartAttempts = 20;
constexpr std::chrono::milliseconds kStartPause{50};

/// Blocks all signals in the calling thread during its lifetime. A thread started meanwhile
/// inherits the mask, so signals go to the main thread.
class BlockedSignals {
 public:
  BlockedSignals() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  ~BlockedSignals() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  BlockedSignals(const BlockedSignals&) = delete;
  BlockedSignals& operator=(const BlockedSignals&) = delete;

 private:
  sigset_t before_{};
};

std::atomic<void (*)()>& threadEndAction() {
  static std::atomic<void (*)()> action{nullptr};
  return action;
}

}  // namespace

void setBackgroundThreadEndAction(void (*action)()) {
  threadEndAction() = action;
}

void ThreadPerTaskQueue::async(Task task) {
  if (const auto worker = assign(task)) {
    worker->wakeUp.notify_one();  // not under the lock: the woken thread needs it at once
    return;
  }
  // A shortage of threads or memory is often brief, and a task such as an accept loop must not be
  // lost.
  for (int attempt = 1; !startThread(); ++attempt) {
    if (attempt == kStartAttempts) {
      // The task waits for the next thread that becomes free.
      printError("seldial: no thread for a background task: " + errorText(errno));
      return;
    }
    std::this_thread::sleep_for(kStartPause);
  }
}

std::function<void()> ThreadPerTaskQueue::asyncHeld(Task task) {
  auto worker = takeIdle();
  if (!worker) return BackgroundQueue::asyncHeld(std::move(task));
  return [this, worker = std::move(worker), task = std::move(task)]() mutable {
    {
      const std::lock_guard lock(mutex_);
      worker->task = std::move(task);
    }
    worker->wakeUp.notify_one();
  };
}

std::shared_ptr<ThreadPerTaskQueue::Worker> ThreadPerTaskQueue::takeIdle() {
  const std::lock_guard lock(mutex_);
  if (idle_.empty()) return nullptr;
  auto worker = std::move(idle_.back());
  idle_.pop_back();
  return worker;
}

/// Assigns `task` to an idle thread and returns that thread, which the caller must wake up. Null if
/// no thread is idle: the task then waits for the thread that the caller starts.
std::shared_ptr<ThreadPerTaskQueue::Worker> ThreadPerTaskQueue::assign(Task& task) {
  const std::lock_guard lock(mutex_);
  if (idle_.empty()) {
    waiting_.push_back(std::move(task));
    return nullptr;
  }
  auto worker = std::move(idle_.back());
  idle_.pop_back();
  worker->task = std::move(task);
  return worker;
}

void ThreadPerTaskQueue::after(std::chrono::nanoseconds delay, Task task) {
  async([delay, task = std::move(task)] {
    std::this_thread::sleep_for(delay);
    task();
  });
}

bool ThreadPerTaskQueue::startThread() {
  const BlockedSignals blocked;
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
  pthread_attr_setstacksize(&attributes, kStackSize);
  pthread_t thread{};
  errno = pthread_create(&thread, &attributes, &threadMain, this);
  pthread_attr_destroy(&attributes);
  return errno == 0;
}

void* ThreadPerTaskQueue::threadMain(void* queue) {
  static_cast<ThreadPerTaskQueue*>(queue)->runTasks();
  return nullptr;
}

void ThreadPerTaskQueue::runTasks() {
  const auto worker = std::make_shared<Worker>();
  while (const Task task = nextTask(worker)) {
    task();
  }
  if (auto* const action = threadEndAction().load()) action();
}

/// The next task for the calling thread; empty if none arrived in time.
ThreadPerTaskQueue::Task ThreadPerTaskQueue::nextTask(const std::shared_ptr<Worker>& worker) {
  std::unique_lock lock(mutex_);
  if (!waiting_.empty()) {
    Task task = std::move(waiting_.front());
    waiting_.pop_front();
    return task;
  }
  idle_.push_back(worker);
  const auto hasTask = [&worker] { return static_cast<bool>(worker->task); };
  while (!worker->wakeUp.wait_for(lock, kIdleTime, hasTask)) {
    const auto place = std::find(idle_.begin(), idle_.end(), worker);
    if (place == idle_.end()) continue;  // asyncHeld() has reserved this thread
    idle_.erase(place);
    return nullptr;
  }
  return std::exchange(worker->task, nullptr);
}

}  // namespace linux_port
}  // namespace seldial::platform
