// Where a Seldial waits for "seldial-uc press", in sessions that give programs no hot key.
#pragma once

#include <cstdlib>
#include <string>

namespace seldial::platform {

/// The directory for what programs of one user share while they run; empty where the session has
/// no runtime directory.
inline std::string sharedRuntimeDirectory() {
  const char* const variable = std::getenv("XDG_RUNTIME_DIR");
  std::string directory = variable != nullptr ? variable : "";
  while (directory.ends_with('/')) directory.pop_back();
  return directory.empty() ? "" : directory + "/seldial";
}

/// The path of the socket. Each connection to it is one use of the hot key; nothing is sent over
/// it.
inline std::string pressSocketPath() {
  const std::string directory = sharedRuntimeDirectory();
  return directory.empty() ? "" : directory + "/press";
}

}  // namespace seldial::platform
