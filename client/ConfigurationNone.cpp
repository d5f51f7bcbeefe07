// Where there is no toml++, as on macOS: there is no configuration file.
#include "client/Configuration.h"

namespace seldial {

std::optional<std::vector<Setting>> readConfiguration(const std::string& /*path*/,
                                                      std::string& /*error*/) {
  return std::vector<Setting>();
}

bool writeConfiguration(const std::string& path,
                        const std::map<std::string, std::optional<std::string>>& /*values*/,
                        std::string& error) {
  error = "cannot write " + path + ": this program was built without configuration files";
  return false;
}

}  // namespace seldial
