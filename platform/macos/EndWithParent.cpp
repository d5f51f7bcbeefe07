// This system has no such request, so a process of its own watches the parent and the child, and
// ends with whichever ends first.
#include "platform/EndWithParent.h"

#include <sys/event.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>

namespace seldial::platform {
namespace {

/// The watcher outlives nobody's pipe or socket: their readers wait for an end.
void closeAllBut(int kept) {
  for (int descriptor = getdtablesize() - 1; descriptor >= 0; --descriptor) {
    if (descriptor != kept) close(descriptor);
  }
}

/// 0, or the errno of what went wrong.
int startWatching(int queue, pid_t parent, pid_t child) {
  struct kevent ends[2];
  EV_SET(&ends[0], static_cast<uintptr_t>(parent), EVFILT_PROC, EV_ADD, NOTE_EXIT, 0, nullptr);
  EV_SET(&ends[1], static_cast<uintptr_t>(child), EVFILT_PROC, EV_ADD, NOTE_EXIT, 0, nullptr);
  return queue != -1 && kevent(queue, ends, 2, nullptr, 0, nullptr) != -1 ? 0 : errno;
}

/// Waits for the first end; true when it is not the child's.
bool isOrphaned(int queue, pid_t child) {
  struct kevent ended[2];
  int count = -1;
  do {
    count = kevent(queue, nullptr, 0, ended, 2, nullptr);
  } while (count == -1 && errno == EINTR);
  return std::none_of(ended, ended + std::max(count, 0), [child](const struct kevent& end) {
    return end.ident == static_cast<uintptr_t>(child);
  });
}

[[noreturn]] void watch(pid_t parent, pid_t child, int answer) {
  closeAllBut(answer);
  const int queue = kqueue();
  const int trouble = startWatching(queue, parent, child);
  const bool answered = write(answer, &trouble, sizeof trouble) == sizeof trouble;
  close(answer);
  if (trouble == 0 && answered && isOrphaned(queue, child)) kill(child, SIGTERM);
  _exit(0);
}

}  // namespace

bool endWithParent(pid_t parent) {
  int answer[2];
  if (pipe(answer) == -1) return false;
  const pid_t child = getpid();
  const pid_t between = fork();
  if (between == 0) {
    // By way of a second process: the program is not to find a child that it never had.
    if (fork() == 0) watch(parent, child, answer[1]);
    _exit(0);
  }
  close(answer[1]);
  if (between != -1) waitpid(between, nullptr, 0);
  int trouble = 0;
  // Without an answer there was no process left to give it.
  if (read(answer[0], &trouble, sizeof trouble) != sizeof trouble) trouble = EAGAIN;
  close(answer[0]);
  if (trouble == 0 && getppid() != parent) trouble = ESRCH;
  errno = trouble;
  return trouble == 0;
}

}  // namespace seldial::platform
