#include "platform/linux/Application.h"

#include <chrono>
#include <utility>

#include "platform/linux/ProcessSetUp.h"
#include "platform/linux/TerminationSignals.h"

namespace seldial::platform::linux_port {
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
  TerminationSignals signals(loop_, *delegate);
  delegate->applicationWillFinishLaunching();
  delegate->applicationDidFinishLaunching();
  loop_->run();
  delegate->applicationWillTerminate();
  disconnect();
  signals.forgetDelegate();
  delegate = nullptr;  // while signals are watched: the desktop may wait for its server once more
  return status_;
}

int runApplication(int argc, char* const argv[], const MakeApplicationDelegate& makeDelegate,
                   const ConnectDesktop& connect) {
  setUpProcess();
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
