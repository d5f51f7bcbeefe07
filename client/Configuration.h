// What a user sets up for seldial-uc once: its configuration file, and its start at login.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace seldial {

// The configuration file is TOML, with one setting for each option of the command line.

/// One setting of a configuration file.
struct Setting {
  std::string name;
  std::string value;  ///< a text, or a whole number or truth value as it is written in TOML
  unsigned line = 0;  ///< in the file, from 1 on
};

/// Reads all settings, in the order of the file. A file that does not exist has none. Nothing when
/// the file cannot be read or is not valid; `error` is then one sentence with the file and, if
/// there is one, the line, without a full stop.
[[nodiscard]] std::optional<std::vector<Setting>> readConfiguration(const std::string& path,
                                                                    std::string& error);

/// Gives settings new values, or removes those that have none here. All other settings, comments
/// and blank lines of the file stay as they are. Makes the file and its directories where they are
/// missing, and replaces it as a whole: a reader never sees half of it. False when that fails or
/// the file is not valid; `error` then says why, as above.
[[nodiscard]] bool writeConfiguration(
    const std::string& path, const std::map<std::string, std::optional<std::string>>& values,
    std::string& error);

// The start at login is a unit of systemd's user manager where that runs the desktop session, or
// else an entry in the desktop's autostart directory. Both are files in the user's own
// configuration. Not on macOS. One thread.

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
