// Chooses Wayland where the session runs on it.
//
// The Wayland port is a module that is loaded only then, so that the program on X11 loads none of
// the libraries that it needs.
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "platform/Ports.h"
#include "platform/linux/MainLoop.h"

namespace seldial::platform::linux_port {

/// The ports of the Wayland session whose compositor answers at WAYLAND_DISPLAY. Nothing when there
/// is none. Without the module the ports refuse everything, and one line on standard error says so:
/// Xwayland, which the session may have as well, reports no key that goes to a Wayland window.
/// `connectionLost` is called once, from the loop, when the compositor goes away. Main thread.
std::optional<DesktopPorts> connectToWayland(const std::shared_ptr<MainLoop>& loop,
                                             const std::function<void()>& connectionLost);

}  // namespace seldial::platform::linux_port
