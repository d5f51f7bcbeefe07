#include "ucclient/TerminationSignals.h"

#include <pthread.h>

#include <csignal>
#include <thread>
#include <utility>

namespace seldial {
namespace {

bool isIgnored(int signal) {
  struct sigaction action {};
  sigaction(signal, nullptr, &action);
  return action.sa_handler == SIG_IGN;
}

}  // namespace

void onTerminationSignals(std::function<void()> received) {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM}) sigaddset(&signals, signal);
  // Blocked it would arrive even where it is ignored, as nohup makes it.
  if (!isIgnored(SIGHUP)) sigaddset(&signals, SIGHUP);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  std::thread([signals, received = std::move(received)] {
    for (int signal = 0; sigwait(&signals, &signal) == 0;) received();
  }).detach();
}

}  // namespace seldial
