#include "ucclient/MainThread.h"

#include <pthread.h>

#include <csignal>
#include <thread>
#include <utility>

namespace seldial {
namespace {

bool isIgnored(int signal) {
  struct sigaction action {};
  sigaction(signal, nullptr, &action);
  return action.sa_handler == SIG_IGN;
}

}  // namespace

void MainThread::post(Task task) {
  const std::lock_guard lock(mutex_);
  if (stopped_) return;
  tasks_.push_back(std::move(task));
  posted_.notify_one();
}

void MainThread::run() {
  while (const Task task = next()) task();
}

// A dropped task may hold the last reference to this queue.
void MainThread::stop() {
  std::deque<Task> dropped;  // destroyed after the lock is released
  const std::lock_guard lock(mutex_);
  stopped_ = true;
  dropped.swap(tasks_);
}

/// The next task; empty once stopped.
MainThread::Task MainThread::next() {
  std::unique_lock lock(mutex_);
  posted_.wait(lock, [this] { return stopped_ || !tasks_.empty(); });
  if (stopped_) return {};
  Task task = std::move(tasks_.front());
  tasks_.pop_front();
  return task;
}

void onTerminationSignals(std::function<void()> received) {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM}) sigaddset(&signals, signal);
  // sigwait() would receive it even if it is ignored, as under nohup.
  if (!isIgnored(SIGHUP)) sigaddset(&signals, SIGHUP);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  std::thread([signals, received = std::move(received)] {
    for (int signal = 0; sigwait(&signals, &signal) == 0;) received();
  }).detach();
}

}  // namespace seldial
