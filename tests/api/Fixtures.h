// Helpers for the tests of this directory.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <ctime>
#include <string>
#include <utility>

#include "api/JSON.h"

namespace seldial {

/// Sets the time zone of the process for the lifetime of the object, in POSIX form: "CET-1" is one
/// hour east.
class LocalTimeZone {
 public:
  explicit LocalTimeZone(const char* zone) {
    if (const char* before = std::getenv("TZ")) before_ = before;
    ::setenv("TZ", zone, 1);
  }
  ~LocalTimeZone() {
    if (before_.empty()) {
      ::unsetenv("TZ");
    } else {
      ::setenv("TZ", before_.c_str(), 1);
    }
  }
  LocalTimeZone(const LocalTimeZone&) = delete;
  LocalTimeZone& operator=(const LocalTimeZone&) = delete;

 private:
  std::string before_;
};

/// 13:10:32 GMT on 6 February 2017.
inline constexpr std::time_t kFebruary2017 = 1486386632;

/// Too deep for recursion on any thread's stack.
inline constexpr std::size_t kDeep = 500'000;

/// As deep as a hostile client may nest.
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

/// The values in this order. (They cannot be copied out of a braced list.)
template <class... Values>
JSONArray arrayOf(Values... values) {
  JSONArray array;
  (array.emplace_back(std::move(values)), ...);
  return array;
}

/// The dictionary with this member.
inline JSONDictionary dictionaryOf(const std::string& key, JSONValue value) {
  JSONDictionary dictionary;
  dictionary[key] = std::move(value);
  return dictionary;
}

/// The dictionary with these members, given as key, value, key, value.
template <class... Rest>
JSONDictionary dictionaryOf(const std::string& key, JSONValue value, Rest... rest) {
  JSONDictionary dictionary = dictionaryOf(std::move(rest)...);
  dictionary[key] = std::move(value);
  return dictionary;
}

}  // namespace seldial
