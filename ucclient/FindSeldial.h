#pragma once

#include <string>

namespace seldial {

/// The directory of the running program's own file; empty where the system does not tell.
[[nodiscard]] std::string ownDirectory();

/// The program `seldial`, by itself or in its bundle, that belongs to a program in `directory`:
/// beside it or one folder up where both are installed, in the neighbouring folder where both were
/// built. Otherwise the bare name, which leaves it to PATH.
[[nodiscard]] std::string findSeldial(const std::string& directory);

}  // namespace seldial
