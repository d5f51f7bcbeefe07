#pragma once

#include <optional>
#include <string>

#include "api/JSONValue.h"

namespace seldial {

/// The dictionary as one line of compact JSON text, without a line terminator. Nothing when a text
/// or a key in it is not valid UTF-8 or a number is not finite.
///
/// In texts the double quote, the backslash and the slash are escaped with a backslash, a line
/// feed, carriage return and tab as \n, \r and \t, and every other control character (U+007F too)
/// as \u and four lower-case hexadecimal digits; all else is raw UTF-8. Any thread.
[[nodiscard]] std::optional<std::string> writeJSON(const JSONDictionary& dictionary);

}  // namespace seldial
