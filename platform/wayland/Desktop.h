// A Wayland session, for programs that choose it. This header needs no Wayland library.
#pragma once

#include <functional>
#include <memory>

#include "platform/Ports.h"
#include "platform/linux/MainLoop.h"

namespace seldial::platform::wayland {

/// Takes over a socket that is connected to a compositor and returns the ports of its session;
/// `connectionLost` is called once, from the loop, when the compositor goes away. Where the
/// compositor lacks something, one line on standard error says what, and the ports refuse
/// everything. Main thread.
DesktopPorts connect(int socket, const std::shared_ptr<linux_port::MainLoop>& loop,
                     std::function<void()> connectionLost);

/// The type of `seldialConnectWayland`, by which a program calls connect() in the module that has
/// this folder. Program and module belong to the same build.
using ConnectFunction = void(int socket, const std::shared_ptr<linux_port::MainLoop>& loop,
                             const std::function<void()>& connectionLost, DesktopPorts& ports);

/// The name of that function.
inline constexpr const char* kConnectFunctionName = "seldialConnectWayland";

/// The file name of the module.
inline constexpr const char* kModuleName = "seldial-wayland.so";

}  // namespace seldial::platform::wayland
