#include "platform/wayland/Timer.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

namespace seldial::platform::wayland {

Timer::Timer(linux_port::MainLoop& loop)
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

}  // namespace seldial::platform::wayland
