#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace seldial {

/// The virtual key code of the key with that name, lower case: a letter, a digit, a punctuation
/// mark by its place on a US keyboard ("-" or "minus"), "f1" to "f20", "space", "left",
/// "keypad0" and so on. Nothing for any other name. A modifier is no key here.
[[nodiscard]] std::optional<std::uint16_t> virtualKeyNamed(std::string_view name);

}  // namespace seldial
