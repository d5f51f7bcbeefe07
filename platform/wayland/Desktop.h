// The Wayland desktop. This header does not include Wayland libraries.
#pragma once

#include <functional>
#include <memory>

#include "platform/Ports.h"
#include "platform/linux/MainLoop.h"

namespace seldial::platform::wayland {

/// Takes over a socket that is connected to a compositor and returns the ports of its session;
/// `connectionLost` is called once, from the loop, when the compositor goes away. If the compositor
/// lacks a required interface, one line on standard error names it, and the ports refuse
/// everything. Main thread.
DesktopPorts connect(int socket, const std::shared_ptr<linux_port::MainLoop>& loop,
                     std::function<void()> connectionLost);

/// The type of `seldialConnectWayland`, through which the program calls connect() in the module.
/// Program and module must be from the same build.
using ConnectFunction = void(int socket, const std::shared_ptr<linux_port::MainLoop>& loop,
                             const std::function<void()>& connectionLost, DesktopPorts& ports);

/// The name of that function.
inline constexpr const char* kConnectFunctionName = "seldialConnectWayland";

/// The file name of the module.
inline constexpr const char* kModuleName = "seldial-wayland.so";

}  // namespace seldial::platform::wayland
