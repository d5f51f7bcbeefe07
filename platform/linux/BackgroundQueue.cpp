#include "platform/linux/BackgroundQueue.h"

#include <malloc.h>
#include <pthread.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <thread>
#include <utility>

#include "platform/System.h"

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
  if (const auto seat = handOver(task)) {
    seat->wakeUp.notify_one();  // without the lock, which the thread takes as soon as it runs
    return;
  }
  if (!startThread()) {
    // The task waits for a thread that becomes free. Nobody else could act on this.
    std::fprintf(stderr, "seldial: no thread for a background task: %s\n",
                 errorText(errno).c_str());
  }
}

/// Gives the task to an idle thread, and returns where to wake it up; null when there is none: then
/// the task waits for the thread that will be started.
std::shared_ptr<ThreadPerTaskQueue::Seat> ThreadPerTaskQueue::handOver(Task& task) {
  const std::lock_guard lock(mutex_);
  if (idle_.empty()) {
    waiting_.push_back(std::move(task));
    return nullptr;
  }
  auto seat = std::move(idle_.back());
  idle_.pop_back();
  seat->task = std::move(task);
  return seat;
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
  const auto seat = std::make_shared<Seat>();
  while (const Task task = nextTask(seat)) {
    task();
  }
  malloc_trim(0);  // a quiet moment: what a burst of tasks left behind goes back to the system
}

/// The next task for the calling thread; empty when it has waited in vain.
ThreadPerTaskQueue::Task ThreadPerTaskQueue::nextTask(const std::shared_ptr<Seat>& seat) {
  std::unique_lock lock(mutex_);
  if (!waiting_.empty()) {
    Task task = std::move(waiting_.front());
    waiting_.pop_front();
    return task;
  }
  idle_.push_back(seat);
  seat->wakeUp.wait_for(lock, kIdleTime, [&seat] { return static_cast<bool>(seat->task); });
  if (!seat->task) idle_.erase(std::find(idle_.begin(), idle_.end(), seat));
  return std::exchange(seat->task, nullptr);
}

}  // namespace linux_port
}  // namespace seldial::platform
