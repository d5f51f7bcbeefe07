#pragma once

#include <optional>
#include <string>

namespace seldial {

/// Sends a command to the seldial that listens at `path`, and listens at `answerPath`, to which
/// that seldial delivers its messages, until it has answered. Where another program listens there,
/// it gets the answer, and nothing is waited for. Blocks for ten seconds at most; any thread.
/// Returns what went wrong, or why the command was refused, without a full stop.
[[nodiscard]] std::optional<std::string> sendAndAwaitAnswer(const std::string& command,
                                                            const std::string& path,
                                                            const std::string& answerPath);

}  // namespace seldial
