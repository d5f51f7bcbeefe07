// Code shared by the command lines of both programs: reading options, parsing common values, and
// the path of the configuration file.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace seldial {

/// Reads one command line, argument by argument: options with a value, which follows or is joined
/// by "=", and options without.
class OptionReader {
 public:
  /// Both must outlive the reader. `error` receives one sentence that says what is wrong, without a
  /// full stop.
  OptionReader(const std::vector<std::string>& arguments, std::string& error)
      : arguments_(arguments), error_(error) {}
  virtual ~OptionReader() = default;
  OptionReader(const OptionReader&) = delete;
  OptionReader& operator=(const OptionReader&) = delete;

 protected:
  /// Reads all arguments. False at the first invalid one.
  bool readAll();

  /// Sets the error, with `place_` in front. Always returns false.
  bool fail(const std::string& error);

  std::string place_;  ///< of the option, such as "FILE:LINE: "; empty on the command line

 private:
  [[nodiscard]] virtual bool takesValue(const std::string& name) const = 0;
  /// Sets an option. False, with fail(), if the value is invalid.
  virtual bool setValue(const std::string& name, const std::string& value) = 0;
  /// Sets an option without a value. False if there is no such option.
  virtual bool setFlag(const std::string& name) = 0;

  bool readOption(const std::string& argument);

  const std::vector<std::string>& arguments_;
  std::string& error_;
  std::size_t next_ = 0;
};

/// Parses the milliseconds of --delay: up to five digits and nothing else, at most 65535.
[[nodiscard]] std::optional<std::uint16_t> parseDelay(const std::string& text);

/// The placeholders in a dial command: the number as dialled, its "tel" URI, and the selected text.
inline constexpr std::array kDialPlaceholders{"{}", "{tel}", "{text}"};

/// Splits a command line into words at spaces. Quotes (' and ") protect spaces, and a backslash
/// protects the next character, except between single quotes. Nothing else is special: no
/// variables, no patterns, no operators. A command without a placeholder gets "{}" as its last
/// word. Nothing if there is no program or a quote is not closed; `error` then says why, without a
/// full stop.
[[nodiscard]] std::optional<std::vector<std::string>> parseDialCommand(const std::string& text,
                                                                       std::string& error);

/// The user's configuration directory: XDG_CONFIG_HOME, or ".config" in HOME. Empty if neither is
/// an absolute path.
[[nodiscard]] std::string configurationHome();

/// "seldial/seldial-uc.toml" in the configuration directory; empty if there is none.
[[nodiscard]] std::string defaultConfigurationPath();

}  // namespace seldial
