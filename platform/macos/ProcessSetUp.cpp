#include "platform/macos/ProcessSetUp.h"

#include <dispatch/dispatch.h>
#include <mach-o/dyld.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <csignal>
#include <cstdio>
#include <utility>

#include "platform/System.h"
#include "platform/posix/ProcessSetUp.h"

namespace seldial::platform::macos {
namespace {

using Received = std::function<void()>;

void signalled(void* received) {
  (*static_cast<Received*>(received))();
}

/// A source that lives as long as the process.
void watch(int signal, Received* received) {
  // Its own action comes first, and would end the process.
  std::signal(signal, SIG_IGN);
  const auto source = dispatch_source_create(
      DISPATCH_SOURCE_TYPE_SIGNAL, static_cast<uintptr_t>(signal), 0, dispatch_get_main_queue());
  dispatch_set_context(source, received);
  dispatch_source_set_event_handler_f(source, &signalled);
  dispatch_resume(source);
}

}  // namespace

void restartUnderRealPath(char* const argv[]) {
  char started[PATH_MAX];
  std::uint32_t size = sizeof started;
  struct stat status {};
  if (_NSGetExecutablePath(started, &size) != 0 || lstat(started, &status) != 0) return;
  if (!S_ISLNK(status.st_mode)) return;
  const std::string path = executablePath();
  execv(path.c_str(), argv);
  std::perror(path.c_str());
}

void setUpProcess() {
  posix_port::setUpProcess();
}

void onTerminationSignals(std::function<void()> received) {
  static auto* const kept = new Received;  // never destroyed: the sources outlive main()
  *kept = std::move(received);
  const sigset_t signals = posix_port::terminationSignals();
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    if (sigismember(&signals, signal) == 1) watch(signal, kept);
  }
}

}  // namespace seldial::platform::macos
