#pragma once

#include <string>

namespace seldial {

/// Stops the program at once, for an invariant that no caller can answer for: `message` as one
/// line on standard error, then abort. Nothing is cleaned up and no response is sent. Any thread.
[[noreturn]] void fatalError(const std::string& message);

}  // namespace seldial
