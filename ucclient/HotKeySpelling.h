#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace seldial {

/// A hot key as the command "SetHotKey" describes it.
struct HotKey {
  bool alt = false;
  bool command = false;
  bool ctrl = false;
  bool shift = false;
  std::uint16_t virtualKey = 0;
};

/// Reads what a person writes for a hot key, such as "Ctrl+Alt+D": any of the modifiers ctrl or
/// control, alt or option, shift, and super, command or cmd, and exactly one key (VirtualKeys.h),
/// joined by plus signs, in any order and letter case, with or without blanks. Nothing for anything
/// else; `error` is then one sentence that says what is wrong, without a full stop.
[[nodiscard]] std::optional<HotKey> hotKeyFromSpelling(const std::string& spelling,
                                                       std::string& error);

}  // namespace seldial
