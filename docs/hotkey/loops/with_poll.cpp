// with_poll: a hot key in a program that waits in poll(), until SIGINT or SIGTERM.
#include <poll.h>
#include <sys/signalfd.h>

#include <csignal>

#include "HotKey.h"

int main() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  const auto desktop = desktopWithHotKey();
  if (!desktop) return 1;

  pollfd descriptors[] = {{desktop->descriptor(), POLLIN, 0},
                          {signalfd(-1, &signals, SFD_CLOEXEC), POLLIN, 0}};
  while (descriptors[1].revents == 0) {
    desktop->dispatch();
    poll(descriptors, 2, -1);
  }
}
