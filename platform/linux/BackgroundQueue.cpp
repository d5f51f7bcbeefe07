#include "platform/linux/BackgroundQueue.h"

#include <malloc.h>
#include <pthread.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <thread>
#include <utility>

namespace seldial::platform {

std::shared_ptr<BackgroundQueue> makeSystemBackgroundQueue() {
  return std::make_shared<linux_port::ThreadPerTaskQueue>();
}

namespace linux_port {
namespace {

/// How long a thread waits for another task before it leaves.
constexpr std::chrono::seconds kIdleTime{2};

/// The stack of a background thread, in bytes; only what is used of it costs memory.
constexpr std::size_t kStackSize = 512UL * 1024;

/// Blocks every signal in the calling thread while it lives: the thread that it starts inherits
/// the mask, and signals belong to the main thread.
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

}  // namespace

void ThreadPerTaskQueue::async(Task task) {
  const std::lock_guard lock(mutex_);
  if (!idle_.empty()) {
    auto* const thread = idle_.back();
    idle_.pop_back();
    thread->task = std::move(task);
    thread->wakeUp.notify_one();  // under the lock: the thread may leave as soon as it is free
    return;
  }
  waiting_.push_back(std::move(task));
  if (!startThread()) {
    // The task waits for a thread that becomes free. Nobody else could act on this.
    std::fprintf(stderr, "seldial: no thread for a background task: %s\n", std::strerror(errno));
  }
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
  while (Task task = nextTask()) {
    task();
  }
  malloc_trim(0);  // a quiet moment: what a burst of tasks left behind goes back to the system
}

/// The next task for the calling thread; empty when it has waited in vain.
ThreadPerTaskQueue::Task ThreadPerTaskQueue::nextTask() {
  std::unique_lock lock(mutex_);
  if (!waiting_.empty()) {
    Task task = std::move(waiting_.front());
    waiting_.pop_front();
    return task;
  }
  IdleThread self;
  idle_.push_back(&self);
  self.wakeUp.wait_for(lock, kIdleTime, [&self] { return static_cast<bool>(self.task); });
  if (!self.task) idle_.erase(std::find(idle_.begin(), idle_.end(), &self));
  return std::move(self.task);
}

}  // namespace linux_port
}  // namespace seldial::platform
