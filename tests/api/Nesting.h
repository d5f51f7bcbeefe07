#pragma once

#include <cstddef>
#include <string>

namespace seldial {

/// Deeper than a recursion into it can go on any thread's stack.
inline constexpr std::size_t kDeep = 500'000;

/// The deepest that a hostile client was ever thought of sending.
inline constexpr std::size_t kFiveMillion = 5'000'000;

/// {"a":[[...]]} with that many arrays.
inline std::string nestedArrays(std::size_t depth) {
  return R"({"a":)" + std::string(depth, '[') + std::string(depth, ']') + "}";
}

/// {"a":{"a":...{}}} with that many dictionaries below the outer one.
inline std::string nestedDictionaries(std::size_t depth) {
  std::string text;
  for (std::size_t level = 0; level < depth; ++level) text += R"({"a":)";
  return text + "{}" + std::string(depth, '}');
}

}  // namespace seldial
