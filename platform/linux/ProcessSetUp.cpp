#include "platform/linux/ProcessSetUp.h"

#include <csignal>

#include "platform/posix/ProcessSetUp.h"

namespace seldial::platform::linux_port {

void setUpProcess() {
  posix_port::setUpProcess();
  const sigset_t signals = posix_port::terminationSignals();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

}  // namespace seldial::platform::linux_port
