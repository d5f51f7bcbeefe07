// Hands the command over.
#pragma once

#include <optional>
#include <string>

namespace seldial {

/// Prints the command as one line. Returns what went wrong, if anything.
[[nodiscard]] std::optional<std::string> printCommand(const std::string& command);

/// Sends the command to the Seldial that listens at `path`, over its own connection. Takes a few
/// seconds at most. Returns what went wrong, if anything.
[[nodiscard]] std::optional<std::string> sendCommand(const std::string& command,
                                                     const std::string& path);

}  // namespace seldial
