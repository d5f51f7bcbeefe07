#pragma once

#include <string>

namespace seldial {

/// `text` with the letters A to Z made small: the names that are compared without regard to case
/// are made of these alone.
inline std::string lowercased(std::string text) {
  for (char& letter : text) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return text;
}

}  // namespace seldial
