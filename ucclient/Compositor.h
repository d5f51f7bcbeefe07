#pragma once

#include <optional>
#include <string>

namespace seldial {

/// The program name of the compositor that serves the socket `display`, a value of WAYLAND_DISPLAY;
/// the kernel keeps 15 characters of it. Nothing if no compositor answers.
[[nodiscard]] std::optional<std::string> compositorAt(const std::string& display);

/// How Seldial gets its hot key from that compositor and makes applications copy, in words.
[[nodiscard]] std::string mechanismFor(const std::string& compositor);

}  // namespace seldial
