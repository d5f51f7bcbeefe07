// The values of the tokens of a JSON text.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "api/JSON.h"

namespace seldial {

/// The value of a number that follows JSON's grammar: an integer if it is exactly one in the signed
/// 64-bit range, else the nearest double. Empty if no finite double is near. Does not depend on the
/// locale. Needs little memory, however long the token is.
[[nodiscard]] std::optional<JSONValue> numberFromToken(std::string_view token);

/// Whether numberFromToken() gives a value. Quick for the usual numbers.
[[nodiscard]] bool isFiniteNumber(std::string_view token);

/// Length in bytes of the escape that `text` begins with, a backslash and what follows: 2, 6, or 12
/// for a surrogate pair. 0 if it is not valid.
[[nodiscard]] std::size_t escapeLength(std::string_view text);

/// The text that a string token stands for. `token` is what is between the quotes; its escapes must
/// be valid.
[[nodiscard]] std::string textFromToken(std::string_view token);

}  // namespace seldial
