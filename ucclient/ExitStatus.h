#pragma once

#include <string>

namespace seldial {

/// How a program ended, in words that follow its name: "ended with status 1", "was killed by
/// signal 9 (Killed)". `status` as waitpid() gives it.
[[nodiscard]] std::string describedExitStatus(int status);

}  // namespace seldial
