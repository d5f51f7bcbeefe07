#pragma once

#include <optional>
#include <string>
#include <vector>

namespace seldial {

/// Runs one of the client's commands, such as "seldial-uc status", and returns the exit status: 0,
/// 1 after an error, 2 when the arguments are wrong. `arguments` without the program's own path.
/// Nothing when they do not begin with the name of a command. To be called on the main thread while
/// it is the only one.
[[nodiscard]] std::optional<int> runCommand(const std::vector<std::string>& arguments);

}  // namespace seldial
