#pragma once

#include <cstddef>
#include <limits>
#include <optional>
#include <string>

#include "api/JSONValue.h"

namespace seldial {

inline constexpr std::size_t kAllLevels = std::numeric_limits<std::size_t>::max();

/// Parses one JSON text, strictly: nothing but blanks may stand around it, a raw NUL is never a
/// part of it, it is well-formed UTF-8 (also once its escapes are resolved, so half a surrogate
/// pair is an error), and every number is finite as a double. Any depth of nesting is read. A byte
/// order mark in front is skipped; of members with the same key the last one counts.
///
/// Gives the dictionary or the array that the text holds, and nothing for any other text: a text,
/// number, boolean or null alone is a failure like a syntax error. Only `levels` levels of
/// containers are kept: a deeper one is checked like the rest, at no cost in memory, and comes as
/// null. Any thread.
[[nodiscard]] std::optional<JSONValue> readJSON(const std::string& text,
                                                std::size_t levels = kAllLevels);

}  // namespace seldial
