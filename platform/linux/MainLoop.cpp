#include "platform/linux/MainLoop.h"

#include <poll.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

namespace seldial::platform::linux_port {
namespace {

using Clock = std::chrono::steady_clock;

/// At most so many tasks wait without a wake-up.
constexpr std::size_t kMostWithoutWakeUp = 16;

int makeEventDescriptor() {
  const int descriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  if (descriptor == -1) throw std::system_error(errno, std::generic_category(), "eventfd");
  return descriptor;
}

int makeEpollDescriptor() {
  const int descriptor = epoll_create1(EPOLL_CLOEXEC);
  if (descriptor == -1) throw std::system_error(errno, std::generic_category(), "epoll_create");
  return descriptor;
}

void addToEpoll(int epoll, int descriptor, std::uint32_t events, EventSource* source) {
  epoll_event event{};
  event.events = events;
  event.data.ptr = source;
  if (epoll_ctl(epoll, EPOLL_CTL_ADD, descriptor, &event) == -1) {
    throw std::system_error(errno, std::generic_category(), "epoll_ctl");
  }
}

/// May return early, on EINTR.
void pollFor(std::vector<pollfd>& descriptors, std::chrono::nanoseconds timeout) {
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(timeout);
  const timespec limit{seconds.count(), (timeout - seconds).count()};
  if (ppoll(descriptors.data(), descriptors.size(), &limit, nullptr) == -1) {
    for (auto& descriptor : descriptors) descriptor.revents = 0;
  }
}

}  // namespace

MainLoop::MainLoop()
    : mainThread_(std::this_thread::get_id()),
      wakeUp_(makeEventDescriptor()),
      epoll_(makeEpollDescriptor()),
      interruption_(makeEventDescriptor()) {
  // Edge-triggered: each write ends one wait, and the counter need not be read.
  addToEpoll(epoll_, wakeUp_, EPOLLIN | EPOLLET, nullptr);
}

MainLoop::~MainLoop() {
  close(interruption_);
  close(epoll_);
  close(wakeUp_);
}

void MainLoop::async(Task task) {
  {
    const std::lock_guard lock(mutex_);
    tasks_.push_back(std::move(task));
    if (!std::exchange(waiting_, false)) return;
  }
  eventfd_write(wakeUp_, 1);  // without the lock, which the main thread takes when it wakes up
}

void MainLoop::asyncBeforeNext(Task task) {
  {
    const std::lock_guard lock(mutex_);
    if (tasks_.size() < kMostWithoutWakeUp) {
      tasks_.push_back(std::move(task));
      return;
    }
  }
  async(std::move(task));
}

bool MainLoop::isMainThread() const {
  return std::this_thread::get_id() == mainThread_;
}

void MainLoop::watch(EventSource& source) {
  addToEpoll(epoll_, source.descriptor(), EPOLLIN, &source);
  sources_.push_back(&source);
}

void MainLoop::unwatch(EventSource& source) {
  epoll_ctl(epoll_, EPOLL_CTL_DEL, source.descriptor(), nullptr);
  sources_.erase(std::remove(sources_.begin(), sources_.end(), &source), sources_.end());
}

void MainLoop::run() {
  while (!quit_) {
    runTasks();
    announceWait();
    if (!quit_) serveSources(nothingToDo() ? -1 : 0);
  }
}

void MainLoop::serve() {
  do {
    runTasks();
    announceWait();
    // nothingToDo() last: after it, async() signals the descriptor.
  } while (!quit_ && (serveSources(0) > 0 || !nothingToDo()));
}

void MainLoop::quit() {
  quit_ = true;
}

void MainLoop::interrupt() {
  interrupted_ = quit_ = true;
  eventfd_write(interruption_, 1);
  eventfd_write(wakeUp_, 1);
}

void MainLoop::runTasks() {
  std::vector<Task> tasks;
  {
    const std::lock_guard lock(mutex_);
    tasks.swap(tasks_);
    waiting_ = false;
  }
  for (auto& task : tasks) {
    if (quit_) return;
    task();
    task = nullptr;
  }
}

/// Once this has returned true, async() wakes the loop up.
bool MainLoop::nothingToDo() {
  const std::lock_guard lock(mutex_);
  waiting_ = tasks_.empty();
  return waiting_;
}

void MainLoop::announceWait() {
  const auto sources = sources_;
  for (auto* const source : sources) {
    if (!quit_) source->willWait();
  }
}

/// Returns the number of events, wake-ups included.
int MainLoop::serveSources(int timeout) {
  epoll_event events[8];
  const int count = epoll_wait(epoll_, events, 8, timeout);
  for (int i = 0; i < count && !quit_; ++i) {
    auto* const source = static_cast<EventSource*>(events[i].data.ptr);
    const bool watched = std::find(sources_.begin(), sources_.end(), source) != sources_.end();
    if (watched) source->readable();
  }
  return count;
}

void MainLoop::block(std::chrono::microseconds duration) {
  const auto end = Clock::now() + duration;
  const auto sources = sources_;
  std::vector<pollfd> descriptors;
  for (auto* const source : sources) {
    const bool willing = source->readableWhileBlocked();
    descriptors.push_back({willing ? source->descriptor() : -1, POLLIN, 0});
  }
  descriptors.push_back({interruption_, POLLIN, 0});
  for (auto left = end - Clock::now(); left.count() > 0 && !interrupted_;
       left = end - Clock::now()) {
    pollFor(descriptors, left);
    for (std::size_t i = 0; i < sources.size(); ++i) {
      // A source that hung up would end every further wait at once. run() notifies it later.
      const auto events = descriptors[i].revents;
      const bool servable = (events & POLLIN) != 0 && (events & (POLLHUP | POLLERR)) == 0;
      if (events != 0 && !(servable && sources[i]->readableWhileBlocked())) descriptors[i].fd = -1;
    }
  }
}

Timer::Timer(MainLoop& loop)
    : loop_(loop), timer_(timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK)) {
  if (timer_ == -1) throw std::system_error(errno, std::generic_category(), "timerfd_create");
  loop_.watch(*this);
}

Timer::~Timer() {
  loop_.unwatch(*this);
  close(timer_);
}

void Timer::start(std::chrono::milliseconds delay, std::function<void()> task) {
  task_ = std::move(task);
  // A time of zero would disarm it.
  const auto time = std::max<std::chrono::nanoseconds>(delay, std::chrono::nanoseconds(1));
  const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
  itimerspec setting{};
  setting.it_value.tv_sec = seconds.count();
  setting.it_value.tv_nsec = (time - seconds).count();
  timerfd_settime(timer_, 0, &setting, nullptr);
}

void Timer::stop() {
  task_ = nullptr;
  const itimerspec never{};
  timerfd_settime(timer_, 0, &never, nullptr);
}

void Timer::readable() {
  std::uint64_t times = 0;
  if (read(timer_, &times, sizeof times) != sizeof times) return;
  if (const auto task = std::exchange(task_, nullptr)) task();
}

}  // namespace seldial::platform::linux_port
