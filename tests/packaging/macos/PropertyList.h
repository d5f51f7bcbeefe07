#pragma once

#include <map>
#include <string>
#include <vector>

namespace seldial {

/// A value of a property list: a text, a truth, an array or a dictionary.
struct PropertyList {
  std::string kind;  ///< "string", "true", "false", "array", "dict"
  std::string text;
  std::vector<PropertyList> items;
  std::map<std::string, PropertyList> entries;

  /// The list in that file. Throws std::runtime_error where it is not well formed.
  static PropertyList read(const std::string& path);

  /// The text of that key of a dictionary, or its kind where it is no text; empty without the key.
  [[nodiscard]] std::string operator[](const std::string& key) const;
};

}  // namespace seldial
