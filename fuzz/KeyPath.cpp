// Fuzzes lookup by key path. The input is three lines: the delimiter, the path, and a JSON text.
// The value must be the same as that of a simple implementation that splits the path character by
// character.
#include "api/KeyPath.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "api/JSON.h"
#include "fuzz/Check.h"

namespace {

using seldial::JSONDictionary;
using seldial::JSONValue;

std::string takeLine(std::string_view& input) {
  const std::size_t end = std::min(input.find('\n'), input.size());
  const std::string line(input.substr(0, end));
  input.remove_prefix(std::min(end + 1, input.size()));
  return line;
}

/// Removes the first key from the path and looks up the rest in its value.
const JSONValue* expected(std::string path, const std::string& delimiter,
                          const JSONDictionary& dictionary) {
  std::string key;
  while (!path.empty()) {
    if (!delimiter.empty() && path.starts_with(delimiter)) {
      const auto member = dictionary.find(key);
      if (member == dictionary.end() || member->second.dictionary() == nullptr) return nullptr;
      return expected(path.substr(delimiter.size()), delimiter, *member->second.dictionary());
    }
    key += path[0];
    path.erase(0, 1);
  }
  const auto member = dictionary.find(key);
  return member != dictionary.end() ? &member->second : nullptr;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::string delimiter = takeLine(input);
  const std::string path = takeLine(input);
  auto value = seldial::readJSON(input);
  if (!value || value->dictionary() == nullptr) return 0;
  JSONDictionary& dictionary = *value->dictionary();

  const JSONValue* const found = expected(path, delimiter, dictionary);
  CHECK(seldial::valueForKeyPath(path, delimiter, dictionary) == found);
  seldial::keyPathDelimiter = delimiter;
  CHECK(seldial::valueForKeyPath(path, dictionary) == found);
  seldial::keyPathDelimiter = ".";
  return 0;
}
