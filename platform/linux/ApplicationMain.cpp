// Where the desktop of a Linux program is chosen.
#include "platform/Ports.h"
#include "platform/linux/Application.h"
#include "platform/linux/NoDesktop.h"
#include "platform/linux/WaylandModule.h"
#include "platform/x11/Desktop.h"
#include "platform/x11/copy/Clipboard.h"

namespace seldial::platform {
namespace {

DesktopPorts connect(const std::shared_ptr<linux_port::MainLoop>& loop,
                     std::function<void()> connectionLost) {
  if (auto ports = linux_port::connectToWayland(loop, connectionLost)) return *std::move(ports);
  if (const auto session = x11::connect(loop, std::move(connectionLost))) {
    return {x11::hotKeyEvents(session), x11::makeClipboard(session)};
  }
  return {std::make_shared<linux_port::NoHotKeyEvents>(),
          std::make_shared<linux_port::NoClipboard>()};
}

}  // namespace

int applicationMain(int argc, char* const argv[], const MakeApplicationDelegate& makeDelegate) {
  return linux_port::runApplication(argc, argv, makeDelegate, connect);
}

}  // namespace seldial::platform
