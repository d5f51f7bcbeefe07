#include "client/Options.h"

#include <cstdlib>

#include "client/Configuration.h"

namespace seldial {

bool OptionReader::readAll() {
  while (next_ < arguments_.size()) {
    if (!readOption(arguments_[next_++])) return false;
  }
  return true;
}

bool OptionReader::fail(const std::string& error) {
  error_ = place_ + error;
  return false;
}

bool OptionReader::readOption(const std::string& argument) {
  const auto equals = argument.find('=');
  const std::string name = argument.substr(0, equals);
  if (!takesValue(name)) return setFlag(argument) || fail("there is no option " + argument);
  if (equals != std::string::npos) return setValue(name, argument.substr(equals + 1));
  if (next_ == arguments_.size()) return fail(name + " needs a value");
  return setValue(name, arguments_[next_++]);
}

std::optional<std::uint16_t> delayFrom(const std::string& text) {
  const bool digits = text.find_first_not_of("0123456789") == std::string::npos;
  if (text.empty() || text.size() > 5 || !digits) return std::nullopt;
  const long value = std::strtol(text.c_str(), nullptr, 10);
  if (value > UINT16_MAX) return std::nullopt;
  return static_cast<std::uint16_t>(value);
}

std::string usualConfigurationPath() {
  constexpr const char* kPath = "/seldial/seldial-uc.toml";
  const char* const directory = std::getenv("XDG_CONFIG_HOME");
  if (directory != nullptr && directory[0] == '/') return std::string(directory) + kPath;
  const char* const home = std::getenv("HOME");
  if (home == nullptr || home[0] != '/') return "";
  return std::string(home) + "/.config" + kPath;
}

}  // namespace seldial
