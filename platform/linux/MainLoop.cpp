#include "platform/linux/MainLoop.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

namespace seldial::platform::linux_port {
namespace {

using Clock = std::chrono::steady_clock;

int makeEventDescriptor() {
  const int descriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  if (descriptor == -1) throw std::system_error(errno, std::generic_category(), "eventfd");
  return descriptor;
}

/// A negative time-out waits for ever. EINTR is a wait that ended early, which every caller takes.
void pollFor(std::vector<pollfd>& descriptors, std::chrono::nanoseconds timeout) {
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(timeout);
  const timespec limit{seconds.count(), (timeout - seconds).count()};
  const bool forEver = timeout.count() < 0;
  if (ppoll(descriptors.data(), descriptors.size(), forEver ? nullptr : &limit, nullptr) == -1) {
    for (auto& descriptor : descriptors) descriptor.revents = 0;
  }
}

}  // namespace

MainLoop::MainLoop() : mainThread_(std::this_thread::get_id()), wakeUp_(makeEventDescriptor()) {}

MainLoop::~MainLoop() {
  close(wakeUp_);
}

void MainLoop::async(Task task) {
  {
    const std::lock_guard lock(mutex_);
    tasks_.push_back(std::move(task));
    if (std::exchange(signalled_, true)) return;
  }
  eventfd_write(wakeUp_, 1);  // without the lock, which the main thread takes as soon as it runs
}

bool MainLoop::isMainThread() const {
  return std::this_thread::get_id() == mainThread_;
}

void MainLoop::watch(EventSource& source) {
  sources_.push_back(&source);
}

void MainLoop::unwatch(EventSource& source) {
  sources_.erase(std::remove(sources_.begin(), sources_.end(), &source), sources_.end());
}

void MainLoop::run() {
  while (!quit_) {
    runTasks();
    const auto sources = sources_;
    for (auto* const source : sources) {
      if (!quit_) source->willWait();
    }
    if (!quit_) wait();
  }
}

void MainLoop::quit() {
  quit_ = true;
}

void MainLoop::runTasks() {
  std::vector<Task> tasks;
  {
    const std::lock_guard lock(mutex_);
    tasks.swap(tasks_);
    signalled_ = false;
  }
  for (auto& task : tasks) {
    if (quit_) return;
    task();
    task = nullptr;
  }
}

void MainLoop::wait() {
  const auto sources = sources_;
  std::vector<pollfd> descriptors{{wakeUp_, POLLIN, 0}};
  for (const auto* source : sources) descriptors.push_back({source->descriptor(), POLLIN, 0});
  pollFor(descriptors, std::chrono::nanoseconds(-1));
  if (descriptors.front().revents != 0) {
    eventfd_t count = 0;
    eventfd_read(wakeUp_, &count);
  }
  for (std::size_t i = 0; i < sources.size() && !quit_; ++i) {
    if (descriptors[i + 1].revents != 0) sources[i]->readable();
  }
}

void MainLoop::block(std::chrono::microseconds duration) {
  const auto end = Clock::now() + duration;
  const auto sources = sources_;
  std::vector<pollfd> descriptors;
  for (auto* const source : sources) {
    const bool willing = source->readableWhileBlocked();
    descriptors.push_back({willing ? source->descriptor() : -1, POLLIN, 0});
  }
  for (auto left = end - Clock::now(); left.count() > 0; left = end - Clock::now()) {
    pollFor(descriptors, left);
    for (std::size_t i = 0; i < sources.size(); ++i) {
      // A source that hung up would end every further wait at once; it is told later, by run().
      const auto events = descriptors[i].revents;
      const bool servable = (events & POLLIN) != 0 && (events & (POLLHUP | POLLERR)) == 0;
      if (events != 0 && !(servable && sources[i]->readableWhileBlocked())) descriptors[i].fd = -1;
    }
  }
}

}  // namespace seldial::platform::linux_port
