#include "platform/linux/Application.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <system_error>
#include <utility>

#include "platform/linux/ProcessSetUp.h"
#include "platform/posix/ProcessSetUp.h"

namespace seldial::platform::linux_port {
namespace {

/// Reads the blocked termination signals.
class TerminationSignals final : public EventSource {
 public:
  explicit TerminationSignals(LinuxApplication& application)
      : application_(application), descriptor_(makeDescriptor()) {}
  ~TerminationSignals() override { close(descriptor_); }
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;

  [[nodiscard]] int descriptor() const override { return descriptor_; }
  void readable() override { application_.terminateWithStatus(0); }

 private:
  static int makeDescriptor() {
    const sigset_t signals = posix_port::terminationSignals();
    const int descriptor = signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
    if (descriptor == -1) throw std::system_error(errno, std::generic_category(), "signalfd");
    return descriptor;
  }

  LinuxApplication& application_;
  const int descriptor_;
};

}  // namespace

LinuxApplication::LinuxApplication(std::vector<std::string> arguments, MainLoop& loop)
    : arguments_(std::move(arguments)), loop_(loop) {}

void LinuxApplication::terminate(ApplicationDelegate* /*sender*/) {
  terminateWithStatus(0);
}

void LinuxApplication::usleep(std::uint32_t microseconds) {
  loop_.block(std::chrono::microseconds(microseconds));
}

void LinuxApplication::terminateWithStatus(int status) {
  status_ = status;
  loop_.quit();
}

int LinuxApplication::run(ApplicationDelegate& delegate) {
  TerminationSignals signals(*this);
  loop_.watch(signals);
  delegate.applicationWillFinishLaunching();
  delegate.applicationDidFinishLaunching();
  loop_.run();
  loop_.unwatch(signals);
  delegate.applicationWillTerminate();
  return status_;
}

int runApplication(int argc, char* const argv[], const MakeApplicationDelegate& makeDelegate,
                   const ConnectDesktop& connect) {
  setUpProcess();
  const auto loop = std::make_shared<MainLoop>();
  const auto application =
      std::make_shared<LinuxApplication>(std::vector<std::string>(argv, argv + argc), *loop);
  std::function<void()> disconnect = [] {};
  const auto connectDesktop = [&] {
    auto desktop =
        connect(loop, [&application = *application] { application.terminateWithStatus(1); });
    disconnect = desktop.disconnect;
    return desktop;
  };
  const auto delegate = makeDelegate({application, loop, connectDesktop});
  const int status = application->run(*delegate);
  disconnect();
  return status;
}

}  // namespace seldial::platform::linux_port
