#include "ucclient/Numbers.h"

#include <cstdlib>

namespace seldial {

std::string dialledCharacters(const std::string& text) {
  std::string result;
  for (const char letter : text) {
    const bool digit = letter >= '0' && letter <= '9';
    const bool plusInFront = letter == '+' && result.empty();
    if (digit || letter == '*' || letter == '#' || plusInFront) result += letter;
  }
  return result;
}

std::string regionOfLocale() {
  for (const char* const name : {"LC_ALL", "LC_TELEPHONE", "LANG"}) {
    const char* const value = std::getenv(name);
    if (value == nullptr || value[0] == '\0') continue;
    const std::string locale = value;  // language_REGION.encoding@variant
    const auto underscore = locale.find('_');
    if (underscore == std::string::npos) return "";
    const std::string region =
        locale.substr(underscore + 1, locale.find_first_of(".@", underscore) - underscore - 1);
    return isKnownRegion(region) ? region : "";
  }
  return "";
}

}  // namespace seldial
