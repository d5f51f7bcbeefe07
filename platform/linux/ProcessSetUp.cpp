#include "platform/linux/ProcessSetUp.h"

#include <malloc.h>

#include <csignal>

#include "platform/posix/ProcessSetUp.h"

namespace seldial::platform::linux_port {

void setUpProcess() {
  posix_port::setUpProcess();
  const sigset_t signals = posix_port::terminationSignals();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  mallopt(M_ARENA_MAX, 1);
}

}  // namespace seldial::platform::linux_port
