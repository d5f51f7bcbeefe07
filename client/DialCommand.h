// The command that dials, as the user writes it.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace seldial {

/// What stands in a command for the number as dialled, for its "tel" URI, and for the selection.
inline constexpr std::array kDialPlaceholders{"{}", "{tel}", "{text}"};

/// Splits a command line into words at blanks. Quotes (' and ") keep blanks in a word, and a
/// backslash keeps the next character, except between single quotes. Nothing else is special: no
/// variables, no patterns, no operators. A command without a placeholder gets "{}" as its last
/// word. Nothing when there is no program or a quote is not closed; `error` then says why, without
/// a full stop.
[[nodiscard]] std::optional<std::vector<std::string>> dialCommandFrom(const std::string& text,
                                                                      std::string& error);

}  // namespace seldial
