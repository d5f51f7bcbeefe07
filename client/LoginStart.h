// Starting seldial-uc when the user logs in: a unit of systemd's user manager where that runs the
// desktop session, or else an entry in the desktop's autostart directory. Both are files in the
// user's own configuration. Not on macOS. One thread.
#pragma once

#include <string>

namespace seldial {

/// Whether enableLoginStart() has been called, and disableLoginStart() not since then.
[[nodiscard]] bool startsAtLogin();

/// Whether systemd starts it then, and not the desktop's autostart.
[[nodiscard]] bool startsBySystemd();

/// Makes `program`, an absolute path, start at each login, and under systemd also now, unless it is
/// running. `result` becomes a sentence that says what was done or, if that is false, why not;
/// without a full stop.
bool enableLoginStart(const std::string& program, std::string& result);

/// Undoes that; under systemd it also ends the program. `result` as above.
bool disableLoginStart(std::string& result);

/// The text of the unit and of the autostart entry that start `program`.
[[nodiscard]] std::string loginUnit(const std::string& program);
[[nodiscard]] std::string autostartEntry(const std::string& program);

}  // namespace seldial
