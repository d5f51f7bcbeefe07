// The entry point of the module seldial-wayland.so.
#include "platform/wayland/Desktop.h"

extern "C" __attribute__((visibility("default"))) void seldialConnectWayland(
    int socket, const std::shared_ptr<seldial::platform::linux_port::MainLoop>& loop,
    const std::function<void()>& connectionLost, seldial::platform::DesktopPorts& ports) {
  ports = seldial::platform::wayland::connect(socket, loop, connectionLost);
}

static_assert(
    std::is_same_v<decltype(seldialConnectWayland), seldial::platform::wayland::ConnectFunction>);
