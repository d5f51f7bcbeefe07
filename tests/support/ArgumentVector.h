#pragma once

#include <string>
#include <vector>

namespace seldial::tests {

/// The texts as a null-terminated array for exec and posix_spawn. Valid as long as `texts`.
inline std::vector<char*> argumentVector(std::vector<std::string>& texts) {
  std::vector<char*> result;
  result.reserve(texts.size() + 1);
  for (auto& text : texts) result.push_back(text.data());
  result.push_back(nullptr);
  return result;
}

}  // namespace seldial::tests
