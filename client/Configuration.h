// The configuration file of seldial-uc: TOML, one setting for each option of its command line.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace seldial {

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

}  // namespace seldial
