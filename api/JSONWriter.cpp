#include "api/JSONWriter.h"

#include <cmath>
#include <limits>
#include <locale>
#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

#include "api/Utf8.h"

namespace seldial {

namespace {

bool needsEscape(char character) {
  const auto code = static_cast<unsigned char>(character);
  return code < 0x20 || code == 0x7F || code == '"' || code == '\\' || code == '/';
}

void appendEscape(char character, std::string& text) {
  switch (character) {
    case '\n':
      text += "\\n";
      return;
    case '\r':
      text += "\\r";
      return;
    case '\t':
      text += "\\t";
      return;
    case '"':
    case '\\':
    case '/':
      text += '\\';
      text += character;
      return;
    default:
      break;
  }
  constexpr const char* kDigits = "0123456789abcdef";
  const auto code = static_cast<unsigned char>(character);
  text += "\\u00";
  text += kDigits[code / 16];
  text += kDigits[code % 16];
}

std::string decimalText(double number) {
  // Not printf, whose decimal point follows the user's locale.
  std::ostringstream stream;
  stream.imbue(std::locale::classic());
  stream.precision(std::numeric_limits<double>::max_digits10);
  stream << number;
  return stream.str();
}

/// Writes level by level with a list of the open containers in place of recursion.
class Writer {
 public:
  std::optional<std::string> write(const JSONDictionary& dictionary) {
    open(&dictionary, nullptr);
    while (valid_ && !open_.empty()) writeNext();
    if (!valid_) return {};
    return std::move(text_);
  }

 private:
  struct OpenContainer {
    const JSONDictionary* dictionary;  // one of these two
    const JSONArray* array;
    JSONDictionary::const_iterator member;
    std::size_t element;
    bool first;
  };

  void open(const JSONDictionary* dictionary, const JSONArray* array) {
    text_ += dictionary != nullptr ? '{' : '[';
    JSONDictionary::const_iterator member;
    if (dictionary != nullptr) member = dictionary->begin();
    open_.push_back({dictionary, array, member, 0, true});
  }

  void writeNext() {
    const bool inDictionary = open_.back().dictionary != nullptr;
    if (const JSONValue* value = inDictionary ? nextMember() : nextElement()) {
      writeValue(*value);
    } else {
      text_ += inDictionary ? '}' : ']';
      open_.pop_back();
    }
  }

  const JSONValue* nextMember() {
    auto& level = open_.back();
    if (level.member == level.dictionary->end()) return nullptr;
    separate();
    const auto& [key, value] = *level.member++;
    writeText(key);
    text_ += ':';
    return &value;
  }

  const JSONValue* nextElement() {
    auto& level = open_.back();
    if (level.element == level.array->size()) return nullptr;
    separate();
    return &(*level.array)[level.element++];
  }

  void separate() {
    if (!std::exchange(open_.back().first, false)) text_ += ',';
  }

  void writeValue(const JSONValue& value) {
    if (const auto* text = value.text()) {
      writeText(*text);
    } else if (const auto boolean = value.boolean()) {
      text_ += *boolean ? "true" : "false";
    } else if (const auto integer = value.integer()) {
      text_ += std::to_string(*integer);
    } else if (const auto number = value.number()) {
      valid_ = valid_ && std::isfinite(*number);
      text_ += decimalText(*number);
    } else if (value.isNull()) {
      text_ += "null";
    } else {
      open(value.dictionary(), value.array());
    }
  }

  void writeText(std::string_view text) {
    valid_ = valid_ && isValidUTF8(text);
    text_ += '"';
    std::size_t plain = 0;  // where the characters that stand for themselves begin
    for (std::size_t index = 0; index < text.size(); ++index) {
      if (!needsEscape(text[index])) continue;
      text_ += text.substr(plain, index - plain);
      appendEscape(text[index], text_);
      plain = index + 1;
    }
    text_ += text.substr(plain);
    text_ += '"';
  }

  std::string text_;
  std::vector<OpenContainer> open_;
  bool valid_ = true;
};

}  // namespace

std::optional<std::string> writeJSON(const JSONDictionary& dictionary) {
  return Writer().write(dictionary);
}

}  // namespace seldial
