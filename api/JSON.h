// JSON values, reading and writing them as text, and UTF-8 validation.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace seldial {

class JSONValue;

/// Values by key. Keys are compared exactly.
using JSONDictionary = std::map<std::string, JSONValue, std::less<>>;
using JSONArray = std::vector<JSONValue>;

/// One JSON value: null, string, boolean, number, dictionary or array. It owns what it holds and
/// can be moved but not copied. Destroying it does not recurse, so any depth of nesting is safe.
class JSONValue {
 public:
  JSONValue() noexcept;  ///< null
  JSONValue(bool value) noexcept;
  JSONValue(int value) noexcept;
  JSONValue(std::int64_t value) noexcept;
  JSONValue(double value) noexcept;  ///< integer() does not return it, even if it has no fraction
  JSONValue(std::string value);
  JSONValue(const char* value);
  JSONValue(JSONDictionary value);
  JSONValue(JSONArray value);

  /// Moving leaves `other` null. `other` may be a part of the value that is assigned to.
  JSONValue(JSONValue&& other) noexcept;
  JSONValue& operator=(JSONValue&& other) noexcept;
  ~JSONValue();

  [[nodiscard]] bool isNull() const;

  // Each returns the value if it has that type, otherwise nothing. A boolean is not a number.
  [[nodiscard]] std::optional<bool> boolean() const;
  [[nodiscard]] std::optional<std::int64_t> integer() const;
  [[nodiscard]] std::optional<double> number() const;  ///< for an integer, the nearest double
  [[nodiscard]] const std::string* text() const;
  [[nodiscard]] std::string* text();
  [[nodiscard]] const JSONDictionary* dictionary() const;
  [[nodiscard]] JSONDictionary* dictionary();
  [[nodiscard]] const JSONArray* array() const;
  [[nodiscard]] JSONArray* array();

 private:
  using Content =
      std::variant<std::monostate, bool, std::int64_t, double, std::unique_ptr<std::string>,
                   std::unique_ptr<JSONDictionary>, std::unique_ptr<JSONArray>>;

  [[nodiscard]] bool isContainer() const;
  void moveContainersTo(std::vector<JSONValue>& containers);

  Content content_;
};

/// Reads one JSON text (RFC 8259). Returns the dictionary or array at the top level, or nothing if
/// the text is invalid or contains another value.
///
/// The text and the strings in it, with escapes resolved, must be valid UTF-8, so a lone surrogate
/// is an error. Numbers must be finite as doubles; one that is exactly an integer in the signed
/// 64-bit range (19, 19.0, 1.9e1) is read as an integer. If members have the same key, the last one
/// counts. A byte order mark at the beginning is skipped. The nesting depth is not limited. Any
/// thread.
[[nodiscard]] std::optional<JSONValue> readJSON(std::string_view text);

/// Like readJSON, but of a dictionary it keeps only the members named in `keys`, with null in place
/// of nested containers, and of an array nothing. Besides the values that it keeps, it needs one
/// bit per level of nesting. Any thread.
[[nodiscard]] std::optional<JSONValue> readJSONMembers(std::string_view text,
                                                       const std::vector<std::string_view>& keys);

/// Writes `dictionary` as compact JSON text without a line terminator. Returns nothing if a string
/// or key is not valid UTF-8 or a number is not finite. Any thread.
///
/// In strings the quote, backslash and slash are escaped with a backslash, line feed, carriage
/// return and tab as \n, \r and \t, other control characters including U+007F as \u and four
/// lower-case hexadecimal digits. Everything else is raw UTF-8.
[[nodiscard]] std::optional<std::string> writeJSON(const JSONDictionary& dictionary);

/// A JSON text for output. It may be six times as long as the strings in its dictionary, so it is
/// not kept in memory: each read generates the same text again, in pieces.
class JSONString {
 public:
  /// Takes the next piece. Returns false if it wants no more.
  using Sink = std::function<bool(std::string_view piece)>;

  /// Wraps a text that is already JSON.
  JSONString(std::string text);
  JSONString(const char* text);

  /// The text that writeJSON() returns.
  [[nodiscard]] static std::optional<JSONString> from(JSONDictionary dictionary);

  /// Passes the text to `sink`, in order, in pieces of 16 KiB; the last one may be shorter. No
  /// piece is empty.
  void forEachPiece(const Sink& sink) const;

  /// The whole text.
  [[nodiscard]] std::string string() const;

 private:
  explicit JSONString(JSONDictionary dictionary);

  std::variant<std::string, JSONDictionary> content_;
};

/// Whether `bytes` are valid UTF-8: no overlong form, no surrogate, nothing above U+10FFFF and no
/// incomplete character. Empty is valid. Any thread.
[[nodiscard]] bool isValidUTF8(std::string_view bytes);

}  // namespace seldial
