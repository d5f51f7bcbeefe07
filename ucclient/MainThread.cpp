#include "ucclient/MainThread.h"

#include <utility>

namespace seldial {

void MainThread::post(Task task) {
  const std::lock_guard lock(mutex_);
  tasks_.push_back(std::move(task));
  posted_.notify_one();
}

void MainThread::run() {
  while (!stopped_) next()();
}

void MainThread::stop() {
  stopped_ = true;
}

MainThread::Task MainThread::next() {
  std::unique_lock lock(mutex_);
  posted_.wait(lock, [this] { return !tasks_.empty(); });
  Task task = std::move(tasks_.front());
  tasks_.pop_front();
  return task;
}

}  // namespace seldial
