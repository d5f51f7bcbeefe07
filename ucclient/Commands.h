// The client's commands, besides a run of the client itself. Main thread only.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace seldial {

struct Options;

/// Runs one of the client's commands, such as "seldial-uc status", and returns the exit status: 0,
/// 1 after an error, 2 when the arguments are wrong. `arguments` without the program's own path.
/// Nothing when they do not begin with the name of a command. Call it while the main thread is the
/// only one.
[[nodiscard]] std::optional<int> runCommand(const std::vector<std::string>& arguments);

/// "seldial-uc check": looks at everything that dialling with these options needs, and prints what
/// it finds: the session, the programs, whether the hot key can be had and a selected text copied.
/// Starts a seldial for a moment, and a window. Returns whether all of it is as it should be.
[[nodiscard]] bool checkEverything(const Options& options);

}  // namespace seldial
