#pragma once

#include <string>

namespace seldial {

/// Selected text in the characters that telephone numbers are usually typed in: every decimal digit
/// of Unicode becomes 0 to 9, every blank one space, every hyphen, dash and minus sign "-", every
/// dot that separates digits ".", every plus sign "+", fullwidth characters their ASCII ones, and
/// every kind of line break "\n", and a tab too, since it
/// separates columns. Characters that are not visible are removed: soft hyphens,
/// zero-width characters, marks for the writing direction. All other characters are kept. Bytes
/// that are not UTF-8 become U+FFFD.
[[nodiscard]] std::string cleanedText(const std::string& text);

}  // namespace seldial
