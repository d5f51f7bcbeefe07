#pragma once

#include <string>

namespace seldial {

/// `text` fit for a line on a terminal: each control character (C0, U+007F and C1) as \u and four
/// hexadecimal digits. What was selected somewhere on the desktop can so neither break the line
/// nor steer the terminal, and a JSON text keeps its meaning.
[[nodiscard]] std::string printable(const std::string& text);

}  // namespace seldial
