// The configuration file of seldial-uc, and its start at login.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace seldial {

// The configuration file is TOML, with one setting for each command-line option.

/// One setting of a configuration file.
struct Setting {
  std::string name;
  std::string value;  ///< a string, or an integer or boolean as it is written in TOML
  unsigned line = 0;  ///< in the file, from 1 on
};

/// Reads all settings, in the order of the file. A file that does not exist has none. Nothing if
/// the file cannot be read or is invalid; `error` is then one sentence without a full stop that
/// names the file and, if known, the line.
[[nodiscard]] std::optional<std::vector<Setting>> readConfiguration(const std::string& path,
                                                                    std::string& error);

/// Changes the given settings, or removes those without a value. All other settings, comments and
/// blank lines of the file are preserved. Creates the file and its directories if they are missing,
/// and replaces the file atomically. False if that fails or the file is invalid; `error` then says
/// why, as above.
[[nodiscard]] bool writeConfiguration(
    const std::string& path, const std::map<std::string, std::optional<std::string>>& values,
    std::string& error);

// The start at login is a unit of systemd's user manager if that runs the desktop session,
// otherwise an entry in the desktop's autostart directory. Both are files in the user's
// configuration directory. Not on macOS. These functions are for one thread.

/// Whether the start at login is enabled.
[[nodiscard]] bool startsAtLogin();

/// Whether systemd starts the program at login, and not the desktop's autostart.
[[nodiscard]] bool startsBySystemd();

/// Makes `program`, an absolute path, start at each login, and under systemd also now, unless it is
/// running. `result` becomes a sentence without a full stop that says what was done or, if the
/// function returns false, why not.
bool enableLoginStart(const std::string& program, std::string& result);

/// Reverts enableLoginStart(); under systemd it also stops the program. `result` as above.
bool disableLoginStart(std::string& result);

/// The text of the unit and of the autostart entry that start `program`.
[[nodiscard]] std::string loginUnit(const std::string& program);
[[nodiscard]] std::string autostartEntry(const std::string& program);

}  // namespace seldial
