#include "platform/posix/ProcessSetUp.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <initializer_list>

namespace seldial::platform::posix_port {
namespace {

/// The most descriptors that macOS allows when the hard limit is infinite.
constexpr rlim_t kDescriptorsOfMacOS = 10240;

void openStandardDescriptors() {
  // open() returns the lowest free number, so each round fills the lowest gap.
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
  for (const rlim_t wanted : {limit.rlim_max, kDescriptorsOfMacOS}) {
    if (wanted <= limit.rlim_cur) return;
    const rlimit raised{wanted, limit.rlim_max};
    if (setrlimit(RLIMIT_NOFILE, &raised) == 0) return;
  }
}

}  // namespace

sigset_t terminationSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGINT);
  // A signalfd would receive SIGHUP even if it is ignored.
  struct sigaction hangUp {};
  sigaction(SIGHUP, nullptr, &hangUp);
  if (hangUp.sa_handler != SIG_IGN) sigaddset(&signals, SIGHUP);
  return signals;
}

void setUpProcess() {
  openStandardDescriptors();
  std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
  std::signal(SIGPIPE, SIG_IGN);
  raiseDescriptorLimit();
  umask(S_IRWXG | S_IRWXO);
}

}  // namespace seldial::platform::posix_port
