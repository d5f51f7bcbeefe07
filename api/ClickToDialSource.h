#pragma once

#include <optional>
#include <string>

namespace seldial {

/// Where a number to dial came from.
enum class ClickToDialSource { CommandLine, Pasteboard, StdIO };

/// The text value of a source: its name.
[[nodiscard]] const char* rawValue(ClickToDialSource source);

/// The source with exactly that text value, if any.
[[nodiscard]] std::optional<ClickToDialSource> clickToDialSource(const std::string& rawValue);

}  // namespace seldial
