// Where the desktop of a Linux program is chosen.
#include <malloc.h>

#include "platform/Ports.h"
#include "platform/linux/Application.h"
#include "platform/linux/BackgroundQueue.h"
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

/// Before any other thread is started. Not in programs of the libraries, whose allocator is their
/// own concern.
void tuneAllocator() {
  mallopt(M_ARENA_MAX, 1);  // threads come and go, and each would keep an arena
  // Large blocks go back to the system when they are freed. By default the first that is freed
  // raises this limit, and later ones stay with the process.
  mallopt(M_MMAP_THRESHOLD, 128 * 1024);
  // It is quiet then: return the memory of the last burst to the system.
  linux_port::setBackgroundThreadEndAction([] { malloc_trim(0); });
}

}  // namespace

int applicationMain(int argc, char* const argv[], const MakeApplicationDelegate& makeDelegate) {
  tuneAllocator();
  return linux_port::runApplication(argc, argv, makeDelegate, connect);
}

}  // namespace seldial::platform
