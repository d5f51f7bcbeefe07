// What the command lines of both programs have in common: reading options, the values that some of
// them take, and where the configuration is kept.
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
  /// Both outlive the reader. `error` receives one sentence that says what is wrong, without a full
  /// stop.
  OptionReader(const std::vector<std::string>& arguments, std::string& error)
      : arguments_(arguments), error_(error) {}
  virtual ~OptionReader() = default;
  OptionReader(const OptionReader&) = delete;
  OptionReader& operator=(const OptionReader&) = delete;

 protected:
  /// False at the first argument that is wrong.
  bool readAll();

  /// Sets the error, with `place_` in front. Always false.
  bool fail(const std::string& error);

  std::string place_;  ///< of what is being read, such as "FILE:LINE: "; empty: the command line

 private:
  [[nodiscard]] virtual bool takesValue(const std::string& name) const = 0;
  /// False, by fail(), when the value is wrong.
  virtual bool setValue(const std::string& name, const std::string& value) = 0;
  /// False when there is no such option.
  virtual bool setFlag(const std::string& name) = 0;

  bool readOption(const std::string& argument);

  const std::vector<std::string>& arguments_;
  std::string& error_;
  std::size_t next_ = 0;
};

/// Milliseconds as --delay takes them: up to five digits and nothing else, at most 65535.
[[nodiscard]] std::optional<std::uint16_t> delayFrom(const std::string& text);

/// What stands in a command for the number as dialled, for its "tel" URI, and for the selection.
inline constexpr std::array kDialPlaceholders{"{}", "{tel}", "{text}"};

/// Splits a command line into words at blanks. Quotes (' and ") keep blanks in a word, and a
/// backslash keeps the next character, except between single quotes. Nothing else is special: no
/// variables, no patterns, no operators. A command without a placeholder gets "{}" as its last
/// word. Nothing when there is no program or a quote is not closed; `error` then says why, without
/// a full stop.
[[nodiscard]] std::optional<std::vector<std::string>> dialCommandFrom(const std::string& text,
                                                                      std::string& error);

/// The user's directory for configuration: XDG_CONFIG_HOME, or ".config" in HOME. Empty when
/// neither is an absolute path.
[[nodiscard]] std::string configurationHome();

/// "seldial/seldial-uc.toml" in it; empty when there is none.
[[nodiscard]] std::string usualConfigurationPath();

}  // namespace seldial
