#include <dispatch/dispatch.h>
#include <mach-o/dyld.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <memory>
#include <utility>

#include "platform/Output.h"
#include "platform/System.h"
#include "platform/macos/Cocoa.h"
#include "platform/macos/Desktop.h"
#include "platform/macos/DispatchedTask.h"
#include "platform/macos/HotKeyEvents.h"
#include "platform/posix/ProcessSetUp.h"

namespace seldial::platform::macos {

MacApplication::MacApplication(std::vector<std::string> arguments)
    : arguments_(std::move(arguments)) {}

void MacApplication::terminate(ApplicationDelegate* sender) {
  terminateSharedApplication(sender);
}

void MacApplication::usleep(std::uint32_t microseconds) {
  ::usleep(microseconds);
}

void DispatchMainQueue::async(Task task) {
  dispatch_async_f(dispatch_get_main_queue(), newTaskContext(std::move(task)), &runTaskContext);
}

bool DispatchMainQueue::isMainThread() const {
  return pthread_main_np() != 0;
}

Ports makePorts(std::vector<std::string> arguments) {
  const auto connectDesktop = [] {
    return DesktopPorts{std::make_shared<CarbonHotKeyEvents>(&requestConsent),
                        std::make_shared<MacClipboard>()};
  };
  return {std::make_shared<MacApplication>(std::move(arguments)),
          std::make_shared<DispatchMainQueue>(), connectDesktop};
}

void restartUnderRealPath(char* const argv[]) {
  char started[PATH_MAX];
  std::uint32_t size = sizeof started;
  struct stat status {};
  if (_NSGetExecutablePath(started, &size) != 0 || lstat(started, &status) != 0) return;
  if (!S_ISLNK(status.st_mode)) return;
  const std::string path = executablePath();
  execv(path.c_str(), argv);
  printError(path + ": " + errorText(errno));
}

namespace {

/// Used on `queue`, except for `received`.
struct Termination {
  std::function<void()> received;
  std::function<void()> mustEnd;
  dispatch_queue_t queue = nullptr;
  int signals = 0;
  bool interrupted = false;
};

void received(void* termination) {
  static_cast<Termination*>(termination)->received();
}

void interrupt(void* termination) {
  auto& ending = *static_cast<Termination*>(termination);
  if (!std::exchange(ending.interrupted, true)) ending.mustEnd();
}

void endProcess(void* /*termination*/) {
  _exit(EXIT_SUCCESS);
}

void after(std::chrono::nanoseconds delay, Termination& ending, dispatch_function_t step) {
  dispatch_after_f(dispatch_time(DISPATCH_TIME_NOW, delay.count()), ending.queue, &ending, step);
}

void signalArrived(void* termination) {
  using posix_port::kTerminationTimeout;
  auto& ending = *static_cast<Termination*>(termination);
  if (++ending.signals == 1) {
    dispatch_async_f(dispatch_get_main_queue(), &ending, &received);
    after(kTerminationTimeout, ending, &interrupt);
    after(kTerminationTimeout + posix_port::kTerminationGrace, ending, &endProcess);
  } else {
    interrupt(&ending);
    endProcess(nullptr);
  }
}

/// Creates a source that lives as long as the process.
void watch(int signal, Termination* ending) {
  // The default action of the signal would end the process before the source is notified.
  std::signal(signal, SIG_IGN);
  const auto source = dispatch_source_create(DISPATCH_SOURCE_TYPE_SIGNAL,
                                             static_cast<uintptr_t>(signal), 0, ending->queue);
  dispatch_set_context(source, ending);
  dispatch_source_set_event_handler_f(source, &signalArrived);
  dispatch_resume(source);
}

}  // namespace

void onTerminationSignals(std::function<void()> received, std::function<void()> mustEnd) {
  static auto* const ending = new Termination;  // never destroyed: the sources outlive main()
  *ending = {std::move(received), std::move(mustEnd),
             dispatch_queue_create("org.seldial.signals", nullptr)};
  const sigset_t signals = posix_port::terminationSignals();
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    if (sigismember(&signals, signal) == 1) watch(signal, ending);
  }
}

}  // namespace seldial::platform::macos
