// What a record offers that is read from or written as a JSON dictionary.
#pragma once

#include <concepts>
#include <optional>

#include "api/JSONValue.h"

namespace seldial {

/// Can be built from a dictionary; nothing when the dictionary does not hold such a record.
template <class Record>
concept Decodable = requires(const JSONDictionary& dictionary) {
  { Record::fromJSONDictionary(dictionary) } -> std::same_as<std::optional<Record>>;
};

/// Can give its dictionary; nothing when it has no JSON form.
template <class Record>
concept Encodable = requires(const Record& record) {
  { record.toJSONDictionary() } -> std::same_as<std::optional<JSONDictionary>>;
};

template <class Record>
concept Codable = Decodable<Record> && Encodable<Record>;

}  // namespace seldial
