#include "ucclient/TerminationSignals.h"

#include <pthread.h>

#include <csignal>
#include <thread>
#include <utility>

namespace seldial {

void onTerminationSignals(std::function<void()> received) {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&signals, signal);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  std::thread([signals, received = std::move(received)] {
    for (int signal = 0; sigwait(&signals, &signal) == 0;) received();
  }).detach();
}

}  // namespace seldial
