// Which program serves a local socket.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

namespace seldial::platform {

/// The process that listens at a local socket; nothing if none does. Always nothing on macOS. Any
/// thread.
[[nodiscard]] std::optional<pid_t> socketOwner(const std::string& path);

}  // namespace seldial::platform
