#include "client/Options.h"

#include <cstdlib>

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

std::string configurationHome() {
  const char* const directory = std::getenv("XDG_CONFIG_HOME");
  if (directory != nullptr && directory[0] == '/') return directory;
  const char* const home = std::getenv("HOME");
  return home != nullptr && home[0] == '/' ? std::string(home) + "/.config" : "";
}

std::string usualConfigurationPath() {
  const std::string home = configurationHome();
  return home.empty() ? "" : home + "/seldial/seldial-uc.toml";
}

}  // namespace seldial
