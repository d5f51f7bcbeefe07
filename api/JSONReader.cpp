// We use our own parser to limit the memory that a large command needs: libraries either build the
// whole document or copy each token, and they recurse or use several bytes per level of nesting.
// This parser copies only the values that are kept.
#include <algorithm>
#include <utility>

#include "api/JSON.h"
#include "api/JSONTokens.h"

namespace seldial {
namespace {

using Keys = std::vector<std::string_view>;

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// Builds the value from the tokens that the parser reports. With `keys` it keeps only those
/// members of the top-level dictionary.
class Builder {
 public:
  explicit Builder(const Keys* keys) : keys_(keys) {}

  JSONValue root;

  void key(std::string_view token) {
    if (skipped_ > 0) return;
    std::string key = textFromToken(token);
    const bool kept =
        keys_ == nullptr || std::find(keys_->begin(), keys_->end(), key) != keys_->end();
    member_ = kept ? &(*open_.back()->dictionary())[std::move(key)] : nullptr;
  }
  void text(std::string_view token) {
    if (JSONValue* value = place()) *value = textFromToken(token);
  }
  void number(std::string_view token) {
    if (JSONValue* value = place()) *value = *numberFromToken(token);
  }
  void scalar(JSONValue scalar) {
    if (JSONValue* value = place()) *value = std::move(scalar);
  }
  void open(bool object) {
    JSONValue* value = place();
    if (value == nullptr || (keys_ != nullptr && !open_.empty())) {
      if (value != nullptr) *value = JSONValue();
      ++skipped_;
      return;
    }
    *value = object ? JSONValue(JSONDictionary()) : JSONValue(JSONArray());
    open_.push_back(value);
  }
  void close() {
    if (skipped_ > 0) {
      --skipped_;
    } else {
      open_.pop_back();
    }
  }

 private:
  // Where the next value belongs; null if it is not kept.
  JSONValue* place() {
    if (skipped_ > 0) return nullptr;
    if (open_.empty()) return &root;
    if (auto* array = open_.back()->array())
      return keys_ != nullptr ? nullptr : &array->emplace_back();
    return member_;
  }

  const Keys* keys_;
  // A container does not grow while one inside it is open, so these stay where they are.
  std::vector<JSONValue*> open_;
  JSONValue* member_ = nullptr;
  std::size_t skipped_ = 0;  // open containers that are not kept
};

/// Checks one text that is valid UTF-8 and reports its tokens to `builder`, if there is one. Keeps
/// the open containers in a list instead of recursing.
class Parser {
 public:
  Parser(std::string_view text, Builder* builder) : text_(text), builder_(builder) {}

  /// Whether the whole text is valid.
  bool parse() {
    if (text_.starts_with(kByteOrderMark)) text_.remove_prefix(kByteOrderMark.size());
    skipBlanks();
    if (peek() != '{' && peek() != '[') return false;
    if (!parseValue()) return false;
    while (!isObject_.empty()) {
      if (!parseNext()) return false;
    }
    skipBlanks();
    return text_.empty();
  }

 private:
  // The next member or element of the innermost container, or its end.
  bool parseNext() {
    const bool object = isObject_.back();
    skipBlanks();
    if (skip(object ? '}' : ']')) {
      if (builder_ != nullptr) builder_->close();
      isObject_.pop_back();
      isFirst_ = false;
      return true;
    }
    if (!std::exchange(isFirst_, false)) {
      if (!skip(',')) return false;
      skipBlanks();
    }
    return (!object || parseKey()) && parseValue();
  }

  bool parseKey() {
    const auto token = stringToken();
    if (!token) return false;
    if (builder_ != nullptr) builder_->key(*token);
    skipBlanks();
    if (!skip(':')) return false;
    skipBlanks();
    return true;
  }

  bool parseValue() {
    switch (peek()) {
      case '{':
        return open(true);
      case '[':
        return open(false);
      case '"':
        return parseText();
      case 't':
        return parseLiteral("true", true);
      case 'f':
        return parseLiteral("false", false);
      case 'n':
        return parseLiteral("null", JSONValue());
      default:
        return parseNumber();
    }
  }

  bool open(bool object) {
    text_.remove_prefix(1);
    if (builder_ != nullptr) builder_->open(object);
    isObject_.push_back(object);
    isFirst_ = true;
    return true;
  }

  bool parseLiteral(std::string_view literal, JSONValue value) {
    if (!text_.starts_with(literal)) return false;
    text_.remove_prefix(literal.size());
    if (builder_ != nullptr) builder_->scalar(std::move(value));
    return true;
  }

  bool parseText() {
    const auto token = stringToken();
    if (token && builder_ != nullptr) builder_->text(*token);
    return token.has_value();
  }

  bool parseNumber() {
    const std::size_t length = numberLength();
    const std::string_view token = text_.substr(0, length);
    if (token.empty() || !isFiniteNumber(token)) return false;
    if (builder_ != nullptr) builder_->number(token);
    text_.remove_prefix(length);
    return true;
  }

  // Takes a string and returns what is between its quotes; nothing if it is not valid.
  std::optional<std::string_view> stringToken() {
    if (!skip('"')) return {};
    std::size_t length = 0;
    while (length < text_.size() && text_[length] != '"') {
      if (static_cast<unsigned char>(text_[length]) < 0x20) return {};
      const std::size_t step = text_[length] == '\\' ? escapeLength(text_.substr(length)) : 1;
      if (step == 0) return {};
      length += step;
    }
    if (length == text_.size()) return {};
    const std::string_view token = text_.substr(0, length);
    text_.remove_prefix(length + 1);
    return token;
  }

  // Length of the number that the text begins with; 0 if there is none.
  [[nodiscard]] std::size_t numberLength() const {
    std::size_t end = at(0) == '-' ? 1 : 0;
    const std::size_t integer = digitsEnd(end);
    if (integer == end || (at(end) == '0' && integer > end + 1)) return 0;
    end = integer;
    if (at(end) == '.') {
      const std::size_t fraction = digitsEnd(end + 1);
      if (fraction == end + 1) return 0;
      end = fraction;
    }
    if (at(end) == 'e' || at(end) == 'E') {
      const std::size_t sign = at(end + 1) == '+' || at(end + 1) == '-' ? 1 : 0;
      const std::size_t exponent = digitsEnd(end + 1 + sign);
      if (exponent == end + 1 + sign) return 0;
      end = exponent;
    }
    return end;
  }

  // Where the digits that begin at `index` end.
  [[nodiscard]] std::size_t digitsEnd(std::size_t index) const {
    while (at(index) >= '0' && at(index) <= '9') ++index;
    return index;
  }

  // The character at `index`; NUL, which no token contains, after the last.
  [[nodiscard]] char at(std::size_t index) const {
    return index < text_.size() ? text_[index] : '\0';
  }
  [[nodiscard]] char peek() const { return at(0); }

  void skipBlanks() {
    std::size_t blanks = 0;
    while (at(blanks) == ' ' || at(blanks) == '\t' || at(blanks) == '\n' || at(blanks) == '\r')
      ++blanks;
    text_.remove_prefix(blanks);
  }
  bool skip(char character) {
    if (peek() != character) return false;
    text_.remove_prefix(1);
    return true;
  }

  std::string_view text_;  // the part that has not been parsed
  Builder* builder_;
  std::vector<bool> isObject_;  // the open containers, from the outermost
  bool isFirst_ = false;        // whether the innermost one is still empty
};

}  // namespace

std::optional<JSONValue> readJSON(std::string_view text) {
  // Checked before anything is built, so that an invalid text full of brackets needs no memory.
  if (!isValidUTF8(text) || !Parser(text, nullptr).parse()) return {};
  Builder builder(nullptr);
  (void)Parser(text, &builder).parse();
  return std::move(builder.root);
}

std::optional<JSONValue> readJSONMembers(std::string_view text, const Keys& keys) {
  Builder builder(&keys);
  if (!isValidUTF8(text) || !Parser(text, &builder).parse()) return {};
  return std::move(builder.root);
}

}  // namespace seldial
