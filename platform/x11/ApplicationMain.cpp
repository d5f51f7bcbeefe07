// Where the ports of a Linux program are chosen.
#include "platform/Installed.h"
#include "platform/headless/Desktop.h"
#include "platform/linux/Application.h"
#include "platform/linux/ProcessSetUp.h"
#include "platform/x11/Desktop.h"

namespace seldial::platform {

int applicationMain(int argc, char* const argv[], const MakeApplicationDelegate& makeDelegate) {
  linux_port::setUpProcess();
  const auto loop = std::make_shared<linux_port::MainLoop>();
  const auto application = std::make_shared<linux_port::LinuxApplication>(
      std::vector<std::string>(argv, argv + argc), *loop);
  installed<MainQueue>() = loop;
  installed<Application>() = application;
  const auto desktop = x11::Desktop::connect(
      *loop, [&application = *application] { application.terminateWithStatus(1); });
  if (!desktop) headless::installDesktop();
  const auto delegate = makeDelegate();
  return application->run(*delegate);
}

}  // namespace seldial::platform
