#pragma once

#include <string>

namespace seldial::platform {

/// The path of the running program's own file, without links; empty where the system does not tell.
[[nodiscard]] std::string ownProgram();

}  // namespace seldial::platform
