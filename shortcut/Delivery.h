// How the command leaves the window.
#pragma once

#include <optional>
#include <string>

namespace seldial {

/// Prints the command as one line; what is wrong when standard output does not take it.
[[nodiscard]] std::optional<std::string> printCommand(const std::string& command);

/// Sends the command to the seldial that listens at `path`, over a connection of its own, and
/// waits a few seconds at most; what is wrong when that fails.
[[nodiscard]] std::optional<std::string> sendCommand(const std::string& command,
                                                     const std::string& path);

}  // namespace seldial
