#include "tests/platform/wayland/WaylandPort.h"

#include <utility>

#include "platform/wayland/Desktop.h"
#include "tests/support/Sockets.h"

namespace seldial::platform::wayland {

WaylandPort::WaylandPort(const tests::Sway& sway, tests::Sway::Ipc ipc) {
  sway.enter(ipc);
  start([display = sway.display()](const auto& loop, auto connectionLost) {
    return connect(tests::connectTo(display), loop, std::move(connectionLost));
  });
}

std::vector<std::uint32_t> WaylandPort::releases() const {
  std::vector<std::uint32_t> ids;
  for (const auto& released : RunningPort::releases()) ids.push_back(released.hotKeyID.id);
  return ids;
}

}  // namespace seldial::platform::wayland
