// Stubs for the features that do not exist on macOS: the configuration file and the start at login.
#include "client/Configuration.h"

namespace seldial {

std::optional<std::vector<Setting>> readConfiguration(const std::string& /*path*/,
                                                      std::string& /*error*/) {
  return std::vector<Setting>();
}

bool writeConfiguration(const std::string& path,
                        const std::map<std::string, std::optional<std::string>>& /*values*/,
                        std::string& error) {
  error = "cannot write " + path + ": there is no configuration file on macOS";
  return false;
}

bool startsAtLogin() {
  return false;
}

bool startsBySystemd() {
  return false;
}

bool enableLoginStart(const std::string& /*program*/, std::string& result) {
  result = "on macOS a launch agent starts programs at login: see docs/macos/installing.md";
  return false;
}

bool disableLoginStart(std::string& result) {
  return enableLoginStart("", result);
}

}  // namespace seldial
