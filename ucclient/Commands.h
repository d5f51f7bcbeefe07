// The commands of seldial-uc. Main thread only.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace seldial {

struct Options;

/// Runs a command, such as "seldial-uc status", and returns the exit status: 0, 1 after an error, 2
/// if the arguments are invalid. `arguments` does not include the path of the program. Nothing if
/// they do not begin with the name of a command. Call this before any other thread is started.
[[nodiscard]] std::optional<int> runCommand(const std::vector<std::string>& arguments);

/// "seldial-uc check": checks everything that dialling with these options needs, and prints the
/// results: the session, the programs, whether the hot key is available, and whether selected text
/// is copied. Starts a seldial and a window for a moment. Returns true if there is no problem.
[[nodiscard]] bool checkEverything(const Options& options);

}  // namespace seldial
