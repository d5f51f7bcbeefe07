#include "api/KeyPath.h"

#include <cstdio>
#include <utility>

namespace seldial {

std::string keyPathDelimiter = ".";

namespace {

std::vector<std::string_view> split(std::string_view keyPath, std::string_view delimiter) {
  std::vector<std::string_view> keys;
  if (!delimiter.empty()) {
    for (auto end = keyPath.find(delimiter); end != std::string_view::npos;
         end = keyPath.find(delimiter)) {
      keys.push_back(keyPath.substr(0, end));
      keyPath.remove_prefix(end + delimiter.size());
    }
  }
  keys.push_back(keyPath);
  return keys;
}

const JSONValue* valueForKey(std::string_view key, const JSONDictionary& dictionary) {
  const auto member = dictionary.find(key);
  return member != dictionary.end() ? &member->second : nullptr;
}

}  // namespace

const JSONValue* valueForKeyPath(std::string_view keyPath, std::string_view delimiter,
                                 const JSONDictionary& dictionary) {
  return valueForKeys(split(keyPath, delimiter), keyPath, dictionary);
}

const JSONValue* valueForKeyPath(std::string_view keyPath, const JSONDictionary& dictionary) {
  return valueForKeyPath(keyPath, keyPathDelimiter, dictionary);
}

JSONValue* valueForKeyPath(std::string_view keyPath, JSONDictionary& dictionary) {
  return const_cast<JSONValue*>(valueForKeyPath(keyPath, std::as_const(dictionary)));
}

const JSONValue* valueForKeys(const std::vector<std::string_view>& keys, std::string_view keyPath,
                              const JSONDictionary& dictionary) {
  if (keys.empty()) {
    const std::string line =
        "[KeyPath] Unable to use keyPath '" + std::string(keyPath) + "' as key on type: String\n";
    (void)std::fputs(line.c_str(), stdout);
    return nullptr;
  }
  const JSONValue* value = nullptr;
  const JSONDictionary* level = &dictionary;
  for (const auto key : keys) {
    if (level == nullptr) return nullptr;
    value = valueForKey(key, *level);
    level = value != nullptr ? value->dictionary() : nullptr;
  }
  return value;
}

}  // namespace seldial
