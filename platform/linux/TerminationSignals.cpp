#include "platform/linux/TerminationSignals.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <mutex>
#include <system_error>

#include "platform/BackgroundQueue.h"
#include "platform/posix/ProcessSetUp.h"

namespace seldial::platform::linux_port {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kForever{-1};

int checked(int descriptor, const char* call) {
  if (descriptor == -1) throw std::system_error(errno, std::generic_category(), call);
  return descriptor;
}

int makeSignalDescriptor() {
  const sigset_t signals = posix_port::terminationSignals();
  return checked(signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK), "signalfd");
}

/// A descriptor that is closed with its owner.
struct Descriptor {
  explicit Descriptor(int opened) : number(opened) {}
  ~Descriptor() { close(number); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  const int number;
};

}  // namespace

class TerminationSignals::Watch {
 public:
  Watch(const std::shared_ptr<MainLoop>& loop, ApplicationDelegate& delegate)
      : loop_(loop), delegate_(&delegate) {}

  void stop() const { eventfd_write(stop_.number, 1); }
  void forgetDelegate();
  void run();

 private:
  enum class Event { kSignal, kTimeout, kStop };

  [[nodiscard]] Event next(milliseconds timeout) const;
  void end() const;
  void interrupt();

  const std::weak_ptr<MainLoop> loop_;
  const Descriptor signals_{makeSignalDescriptor()};
  const Descriptor stop_{checked(eventfd(0, EFD_CLOEXEC), "eventfd")};

  std::mutex mutex_;               ///< held while the delegate is called
  ApplicationDelegate* delegate_;  ///< guarded by `mutex_`; null once it may be gone
};

TerminationSignals::TerminationSignals(const std::shared_ptr<MainLoop>& loop,
                                       ApplicationDelegate& delegate)
    : watch_(std::make_shared<Watch>(loop, delegate)) {
  sharedBackgroundQueue()->async([watch = watch_] { watch->run(); });
}

TerminationSignals::~TerminationSignals() {
  watch_->stop();
}

void TerminationSignals::forgetDelegate() {
  watch_->forgetDelegate();
}

void TerminationSignals::Watch::forgetDelegate() {
  const std::lock_guard lock(mutex_);
  delegate_ = nullptr;
}

void TerminationSignals::Watch::run() {
  Event first = Event::kTimeout;
  while (first == Event::kTimeout) first = next(kForever);
  if (first == Event::kStop) return;
  end();
  const Event second = next(posix_port::kTerminationPatience);
  if (second == Event::kStop) return;
  interrupt();
  const auto grace = second == Event::kSignal ? posix_port::kSecondTerminationGrace
                                              : posix_port::kTerminationGrace;
  if (next(grace) == Event::kStop) return;
  _exit(EXIT_SUCCESS);
}

/// Takes the next signal, if one comes in time.
TerminationSignals::Watch::Event TerminationSignals::Watch::next(milliseconds timeout) const {
  pollfd watched[] = {{stop_.number, POLLIN, 0}, {signals_.number, POLLIN, 0}};
  int ready = -1;
  while (ready == -1) ready = poll(watched, 2, static_cast<int>(timeout.count()));
  if (watched[0].revents != 0) return Event::kStop;
  signalfd_siginfo signal{};
  return read(signals_.number, &signal, sizeof signal) > 0 ? Event::kSignal : Event::kTimeout;
}

void TerminationSignals::Watch::end() const {
  const auto loop = loop_.lock();
  if (loop) loop->async([&loop = *loop] { loop.quit(); });
}

void TerminationSignals::Watch::interrupt() {
  {
    const std::lock_guard lock(mutex_);
    if (delegate_ != nullptr) delegate_->applicationMustEnd();
  }
  if (const auto loop = loop_.lock()) loop->interrupt();
}

}  // namespace seldial::platform::linux_port
