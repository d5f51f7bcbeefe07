#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace seldial {

/// The integer that a JSON number with a fraction or an exponent is: exactly, by its digits, with
/// no rounding. Nothing when it is none or lies outside the signed 64-bit range. `number` follows
/// JSON's grammar, except that any character may stand for the decimal point.
[[nodiscard]] std::optional<std::int64_t> exactInteger(std::string_view number);

}  // namespace seldial
