#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace seldial {

class JSONValue;

/// Text keys to values; looked up by exact, case-sensitive comparison and ordered by key.
using JSONDictionary = std::map<std::string, JSONValue, std::less<>>;
using JSONArray = std::vector<JSONValue>;

/// One value of a JSON text: null, text, boolean, number, dictionary or array. A value owns what
/// it holds; a copy is deep. Copying and destroying survive any depth of nesting. 16 bytes.
class JSONValue {
 public:
  /// Null.
  JSONValue() noexcept;
  JSONValue(bool value) noexcept;
  JSONValue(int value) noexcept;
  JSONValue(std::int64_t value) noexcept;
  /// A number that integer() does not give, even when it has no fraction.
  JSONValue(double value) noexcept;
  JSONValue(std::string value);
  JSONValue(const char* value);
  JSONValue(JSONDictionary value);
  JSONValue(JSONArray value);

  JSONValue(const JSONValue& other);
  /// Leaves `other` null.
  JSONValue(JSONValue&& other) noexcept;
  JSONValue& operator=(const JSONValue& other);
  JSONValue& operator=(JSONValue&& other) noexcept;
  ~JSONValue();

  [[nodiscard]] bool isNull() const;

  // Each gives the value when it is of that kind and nothing (null) otherwise; none converts. A
  // boolean is not a number and a number not a boolean.
  [[nodiscard]] std::optional<bool> boolean() const;
  /// A number that is exactly an integer in the signed 64-bit range, however it was written
  /// (19, 19.0 and 1.9e1).
  [[nodiscard]] std::optional<std::int64_t> integer() const;
  /// Any number, as near as a double comes to it.
  [[nodiscard]] std::optional<double> number() const;
  [[nodiscard]] const std::string* text() const;
  [[nodiscard]] const JSONDictionary* dictionary() const;
  [[nodiscard]] JSONDictionary* dictionary();
  [[nodiscard]] const JSONArray* array() const;
  [[nodiscard]] JSONArray* array();

 private:
  using Content =
      std::variant<std::monostate, bool, std::int64_t, double, std::unique_ptr<std::string>,
                   std::unique_ptr<JSONDictionary>, std::unique_ptr<JSONArray>>;
  struct Copying;

  [[nodiscard]] bool isContainer() const;
  void copyLevel(const JSONValue& from, std::vector<Copying>& deeper);
  void takeContainers(std::vector<JSONValue>& taken);

  Content content_;
};

}  // namespace seldial
