#pragma once

#include <string>

namespace seldial {

/// Writes `line` and a newline to standard output in one piece, whatever other threads write; no
/// flush follows. What a closed or full output refuses is lost, on purpose: there is nobody to
/// tell.
void printLine(const std::string& line);

}  // namespace seldial
