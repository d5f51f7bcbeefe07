#include "platform/linux/Application.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <mutex>
#include <system_error>
#include <utility>

#include "platform/BackgroundQueue.h"
#include "platform/Clipboard.h"
#include "platform/HotKeyEvents.h"
#include "platform/posix/ProcessSetUp.h"

namespace seldial::platform::linux_port {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kNoTimeout{-1};

class NoClipboard final : public Clipboard {
 public:
  void clear() override {}
  [[nodiscard]] bool copySelection() override { return false; }
  [[nodiscard]] std::optional<std::string> text() override { return {}; }
};

class NoHotKeyEvents final : public HotKeyEvents {
 public:
  void installReleasedHandler(ReleasedHandler /*handler*/) override {}
  std::optional<HotKeyRef> registerHotKey(std::uint32_t /*keyCode*/, std::uint32_t /*modifiers*/,
                                          HotKeyID /*hotKeyID*/) override {
    return {};
  }
  void unregisterHotKey(HotKeyRef /*ref*/) override {}
};

int checked(int descriptor, const char* call) {
  if (descriptor == -1) throw std::system_error(errno, std::generic_category(), call);
  return descriptor;
}

int makeSignalDescriptor() {
  const sigset_t signals = posix_port::terminationSignals();
  return checked(signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK), "signalfd");
}

/// A descriptor that is closed by its destructor.
struct Descriptor {
  explicit Descriptor(int opened) : number(opened) {}
  ~Descriptor() { close(number); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  const int number;
};

/// The thread that waits for the signals. The main thread cannot: it may be in a libxcb call, which
/// waits for the X server without a time limit, and a frozen server never answers.
class TerminationSignals {
 public:
  /// Does not keep `loop` alive.
  TerminationSignals(const std::shared_ptr<MainLoop>& loop, ApplicationDelegate& delegate)
      : loop_(loop), delegate_(&delegate) {}

  /// The body of the thread: waits until stop(), or until it has ended the application.
  void run();
  /// Does not wait for the thread.
  void stop() const { eventfd_write(stop_.number, 1); }
  /// Call this before the delegate is destroyed. Waits for a call of applicationMustEnd().
  void forgetDelegate();

 private:
  enum class Event { kSignal, kTimeout, kStop };

  [[nodiscard]] Event next(milliseconds timeout) const;
  void quit() const;
  void interrupt();
  [[nodiscard]] bool mayEnd() const;

  const std::weak_ptr<MainLoop> loop_;
  const Descriptor signals_{makeSignalDescriptor()};
  const Descriptor stop_{checked(eventfd(0, EFD_CLOEXEC), "eventfd")};

  std::mutex mutex_;               ///< held while the delegate is called
  ApplicationDelegate* delegate_;  ///< guarded by `mutex_`; null once it may be gone
};

void TerminationSignals::run() {
  Event first = Event::kTimeout;
  while (first == Event::kTimeout) first = next(kNoTimeout);
  if (first == Event::kStop) return;
  quit();
  const Event second = next(posix_port::kTerminationTimeout);
  if (second == Event::kStop) return;
  interrupt();
  const bool atOnce = second == Event::kSignal && mayEnd();
  if (!atOnce && next(posix_port::kTerminationGrace) == Event::kStop) return;
  _exit(EXIT_SUCCESS);
}

/// Returns the next signal, if one arrives in time.
TerminationSignals::Event TerminationSignals::next(milliseconds timeout) const {
  pollfd watched[] = {{stop_.number, POLLIN, 0}, {signals_.number, POLLIN, 0}};
  int ready = -1;
  while (ready == -1) ready = poll(watched, 2, static_cast<int>(timeout.count()));
  if (watched[0].revents != 0) return Event::kStop;
  signalfd_siginfo signal{};
  return read(signals_.number, &signal, sizeof signal) > 0 ? Event::kSignal : Event::kTimeout;
}

void TerminationSignals::quit() const {
  const auto loop = loop_.lock();
  if (loop) loop->async([&loop = *loop] { loop.quit(); });
}

void TerminationSignals::interrupt() {
  {
    const std::lock_guard lock(mutex_);
    if (delegate_ != nullptr) delegate_->applicationMustEnd();
  }
  if (const auto loop = loop_.lock()) loop->interrupt();
}

bool TerminationSignals::mayEnd() const {
  const auto loop = loop_.lock();
  return !loop || loop->mayEnd();
}

void TerminationSignals::forgetDelegate() {
  const std::lock_guard lock(mutex_);
  delegate_ = nullptr;
}

}  // namespace

LinuxApplication::LinuxApplication(std::vector<std::string> arguments,
                                   std::shared_ptr<MainLoop> loop)
    : arguments_(std::move(arguments)), loop_(std::move(loop)) {}

void LinuxApplication::terminate(ApplicationDelegate* /*sender*/) {
  terminateWithStatus(0);
}

void LinuxApplication::usleep(std::uint32_t microseconds) {
  loop_->block(std::chrono::microseconds(microseconds));
}

void LinuxApplication::terminateWithStatus(int status) {
  status_ = status;
  loop_->quit();
}

int LinuxApplication::run(std::shared_ptr<ApplicationDelegate> delegate,
                          const std::function<void()>& disconnect) {
  const auto signals = std::make_shared<TerminationSignals>(loop_, *delegate);
  sharedBackgroundQueue()->async([signals] { signals->run(); });
  delegate->applicationWillFinishLaunching();
  delegate->applicationDidFinishLaunching();
  loop_->run();
  delegate->applicationWillTerminate();
  disconnect();
  signals->forgetDelegate();
  // While the signal thread still runs: the desktop may wait for its server once more.
  delegate = nullptr;
  signals->stop();
  return status_;
}

DesktopPorts noDesktop() {
  return {std::make_shared<NoHotKeyEvents>(), std::make_shared<NoClipboard>()};
}

int runApplication(int argc, char* const argv[], const MakeApplicationDelegate& makeDelegate,
                   const ConnectDesktop& connect) {
  posix_port::setUpProcess();
  const sigset_t signals = posix_port::terminationSignals();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);  // before any thread, which inherits the mask
  const auto loop = std::make_shared<MainLoop>();
  const auto application =
      std::make_shared<LinuxApplication>(std::vector<std::string>(argv, argv + argc), loop);
  std::function<void()> disconnect = [] {};
  const auto connectDesktop = [&] {
    auto desktop =
        connect(loop, [&application = *application] { application.terminateWithStatus(1); });
    disconnect = desktop.disconnect;
    return desktop;
  };
  return application->run(makeDelegate({application, loop, connectDesktop}),
                          [&disconnect] { disconnect(); });
}

}  // namespace seldial::platform::linux_port
