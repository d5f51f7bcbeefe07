#pragma once

#include <string>
#include <vector>

namespace seldial::tests {

/// The texts as exec and posix_spawn take arguments and environments; null at the end. Valid as
/// long as they are.
inline std::vector<char*> argumentVector(std::vector<std::string>& texts) {
  std::vector<char*> result;
  result.reserve(texts.size() + 1);
  for (auto& text : texts) result.push_back(text.data());
  result.push_back(nullptr);
  return result;
}

}  // namespace seldial::tests
