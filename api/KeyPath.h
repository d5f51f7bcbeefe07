// Mapping between JSON dictionaries and typed records: lookup by key path, and the concepts for
// records with a JSON form.
#pragma once

#include <concepts>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "api/JSON.h"

namespace seldial {

/// Separates the keys of a path such as a.b.c; "." unless changed. Read at each lookup. Not
/// synchronised: change it only while no other thread looks up values.
extern std::string keyPathDelimiter;

/// The value at `keyPath`, which is split at each `delimiter` (not at all if that is empty).
/// Returns the value as stored, which may be a JSON null, or nullptr if there is none. Only
/// dictionaries are searched, not arrays. `dictionary` owns the value.
[[nodiscard]] const JSONValue* valueForKeyPath(std::string_view keyPath, std::string_view delimiter,
                                               const JSONDictionary& dictionary);

/// The value at `keyPath`, split at each keyPathDelimiter.
[[nodiscard]] const JSONValue* valueForKeyPath(std::string_view keyPath,
                                               const JSONDictionary& dictionary);

/// Like the function above, for a value that is to be changed or moved from.
[[nodiscard]] JSONValue* valueForKeyPath(std::string_view keyPath, JSONDictionary& dictionary);

/// The value at a path that is already split. If `keys` is empty, it returns nullptr and writes a
/// line that names `keyPath` to standard output.
[[nodiscard]] const JSONValue* valueForKeys(const std::vector<std::string_view>& keys,
                                            std::string_view keyPath,
                                            const JSONDictionary& dictionary);

/// A record that can be made from a dictionary; nothing if the dictionary does not hold one.
template <class Record>
concept Decodable = requires(const JSONDictionary& dictionary) {
  { Record::fromJSONDictionary(dictionary) } -> std::same_as<std::optional<Record>>;
};

/// A record that can be made into a dictionary; nothing if it has no JSON form.
template <class Record>
concept Encodable = requires(const Record& record) {
  { record.toJSONDictionary() } -> std::same_as<std::optional<JSONDictionary>>;
};

template <class Record>
concept Codable = Decodable<Record> && Encodable<Record>;

}  // namespace seldial
