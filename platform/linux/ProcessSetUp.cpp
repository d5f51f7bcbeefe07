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
  // Large blocks go back to the system when they are freed. By default the first that is freed
  // raises this limit, and later ones stay with the process.
  mallopt(M_MMAP_THRESHOLD, 128 * 1024);
}

}  // namespace seldial::platform::linux_port
