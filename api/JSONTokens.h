// Converts the tokens of a JSON text to values.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "api/JSON.h"

namespace seldial {

/// The value of a number that follows JSON's grammar: an integer if it is exactly one in the signed
/// 64-bit range, otherwise the nearest double. Empty if it is too large for a double. Does not
/// depend on the locale. Needs little memory, however long the token is.
[[nodiscard]] std::optional<JSONValue> numberFromToken(std::string_view token);

/// Whether numberFromToken() returns a value. Fast for common numbers.
[[nodiscard]] bool isFiniteNumber(std::string_view token);

/// Length in bytes of the escape that `text` begins with, a backslash and what follows: 2, 6, or 12
/// for a surrogate pair. 0 if it is not valid.
[[nodiscard]] std::size_t escapeLength(std::string_view text);

/// The text of a string token. `token` is what is between the quotes; its escapes must be valid.
[[nodiscard]] std::string textFromToken(std::string_view token);

}  // namespace seldial
