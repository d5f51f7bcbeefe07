// Terminal emulators, which pass a copy keystroke that they do not know to the program inside.
#pragma once

#include <string>

namespace seldial::platform::wayland {

/// How a terminal emulator copies its selection without typing into the program inside.
enum class TerminalKind {
  kNone,   ///< not a terminal that we know
  kVte,    ///< by Ctrl+Insert; it copies an empty text when nothing is selected
  kOther,  ///< by the Copy key, if at all
};

/// The kind of the program whose window has this application id, or class on Xwayland; case is
/// ignored.
[[nodiscard]] TerminalKind terminalKind(const std::string& name);

}  // namespace seldial::platform::wayland
