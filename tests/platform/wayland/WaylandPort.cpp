#include "tests/platform/wayland/WaylandPort.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <stdexcept>
#include <utility>

#include "platform/wayland/Desktop.h"

namespace seldial::platform::wayland {
namespace {

int connectTo(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  const int number = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (connect(number, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
    throw std::runtime_error("no compositor at " + path);
  }
  return number;
}

}  // namespace

WaylandPort::WaylandPort(const tests::Sway& sway, tests::Sway::Ipc ipc) {
  sway.enter(ipc);
  start([display = sway.display()](const auto& loop, auto connectionLost) {
    return connect(connectTo(display), loop, std::move(connectionLost));
  });
}

std::vector<std::uint32_t> WaylandPort::releases() const {
  std::vector<std::uint32_t> ids;
  for (const auto& released : RunningPort::releases()) ids.push_back(released.hotKeyID.id);
  return ids;
}

}  // namespace seldial::platform::wayland
