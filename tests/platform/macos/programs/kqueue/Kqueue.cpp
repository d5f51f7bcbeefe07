// Event queues that watch processes, made of epoll and process descriptors.
#include <sys/epoll.h>
#include <sys/event.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>

int kqueue() {
  return epoll_create1(0);
}

namespace {

int watch(int queue, std::uintptr_t process) {
  const auto descriptor = static_cast<int>(syscall(SYS_pidfd_open, process, 0));
  if (descriptor == -1) return -1;
  epoll_event event{};
  event.events = EPOLLIN;
  event.data.u64 = process;
  return epoll_ctl(queue, EPOLL_CTL_ADD, descriptor, &event);
}

}  // namespace

int kevent(int queue, const struct kevent* changes, int changeCount, struct kevent* events,
           int eventCount, const timespec* /*limit*/) {
  for (int i = 0; i < changeCount; ++i) {
    if (watch(queue, changes[i].ident) == -1) return -1;
  }
  if (eventCount == 0) return 0;
  std::array<epoll_event, 8> ready{};
  const int count = epoll_wait(queue, ready.data(), std::min<int>(eventCount, ready.size()), -1);
  for (int i = 0; i < count; ++i) {
    EV_SET(&events[i], ready.at(static_cast<std::size_t>(i)).data.u64, EVFILT_PROC, 0, NOTE_EXIT, 0,
           nullptr);
  }
  return count;
}
