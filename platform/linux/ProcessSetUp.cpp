#include "platform/linux/ProcessSetUp.h"

#include <fcntl.h>
#include <malloc.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

namespace seldial::platform::linux_port {
namespace {

void openStandardDescriptors() {
  // open() takes the lowest free number, so each turn fills the lowest gap.
  for (int descriptor = open("/dev/null", O_RDWR); descriptor >= 0;
       descriptor = open("/dev/null", O_RDWR)) {
    if (descriptor > STDERR_FILENO) {
      close(descriptor);
      return;
    }
  }
}

void raiseDescriptorLimit() {
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
  limit.rlim_cur = limit.rlim_max;
  setrlimit(RLIMIT_NOFILE, &limit);
}

}  // namespace

sigset_t terminationSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGINT);
  // Blocked it would arrive even where it is ignored, as nohup makes it.
  struct sigaction hangUp {};
  sigaction(SIGHUP, nullptr, &hangUp);
  if (hangUp.sa_handler != SIG_IGN) sigaddset(&signals, SIGHUP);
  return signals;
}

void setUpProcess() {
  openStandardDescriptors();
  std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
  std::signal(SIGPIPE, SIG_IGN);
  const sigset_t signals = terminationSignals();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  raiseDescriptorLimit();
  umask(S_IRWXG | S_IRWXO);
  mallopt(M_ARENA_MAX, 1);
}

}  // namespace seldial::platform::linux_port
