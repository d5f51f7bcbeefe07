#include <cmath>
#include <limits>
#include <locale>
#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

#include "api/JSON.h"

namespace seldial {
namespace {

bool needsEscape(char character) {
  const auto code = static_cast<unsigned char>(character);
  return code < 0x20 || code == 0x7F || code == '"' || code == '\\' || code == '/';
}

std::string escapeOf(char character) {
  switch (character) {
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    case '\t':
      return "\\t";
    case '"':
    case '\\':
    case '/':
      return {'\\', character};
    default:
      constexpr const char* kDigits = "0123456789abcdef";
      const auto code = static_cast<unsigned char>(character);
      return {'\\', 'u', '0', '0', kDigits[code / 16], kDigits[code % 16]};
  }
}

std::string decimalText(double number) {
  // Not printf, whose decimal point depends on the locale.
  std::ostringstream stream;
  stream.imbue(std::locale::classic());
  stream.precision(std::numeric_limits<double>::max_digits10);
  stream << number;
  return stream.str();
}

/// Writes a dictionary into `text`, or only measures it if that is null. Keeps the open containers
/// in a list instead of recursing.
class Writer {
 public:
  explicit Writer(std::string* text) : text_(text) {}

  /// False if the dictionary cannot be written; the text is then incomplete.
  bool write(const JSONDictionary& dictionary) {
    open(&dictionary, nullptr);
    while (valid_ && !open_.empty()) writeNext();
    return valid_;
  }

  [[nodiscard]] std::size_t size() const { return size_; }

 private:
  struct OpenContainer {
    const JSONDictionary* dictionary;  // one of these two
    const JSONArray* array;
    JSONDictionary::const_iterator member;
    std::size_t element;
    bool first;
  };

  void open(const JSONDictionary* dictionary, const JSONArray* array) {
    append(dictionary != nullptr ? "{" : "[");
    JSONDictionary::const_iterator member;
    if (dictionary != nullptr) member = dictionary->begin();
    open_.push_back({dictionary, array, member, 0, true});
  }

  void writeNext() {
    const bool inDictionary = open_.back().dictionary != nullptr;
    if (const JSONValue* value = inDictionary ? nextMember() : nextElement()) {
      writeValue(*value);
    } else {
      append(inDictionary ? "}" : "]");
      open_.pop_back();
    }
  }

  const JSONValue* nextMember() {
    auto& level = open_.back();
    if (level.member == level.dictionary->end()) return nullptr;
    separate();
    const auto& [key, value] = *level.member++;
    writeText(key);
    append(":");
    return &value;
  }

  const JSONValue* nextElement() {
    auto& level = open_.back();
    if (level.element == level.array->size()) return nullptr;
    separate();
    return &(*level.array)[level.element++];
  }

  void separate() {
    if (!std::exchange(open_.back().first, false)) append(",");
  }

  void writeValue(const JSONValue& value) {
    if (const auto* text = value.text()) {
      writeText(*text);
    } else if (const auto boolean = value.boolean()) {
      append(*boolean ? "true" : "false");
    } else if (const auto integer = value.integer()) {
      append(std::to_string(*integer));
    } else if (const auto number = value.number()) {
      valid_ = valid_ && std::isfinite(*number);
      append(decimalText(*number));
    } else if (value.isNull()) {
      append("null");
    } else {
      open(value.dictionary(), value.array());
    }
  }

  void writeText(std::string_view text) {
    valid_ = valid_ && isValidUTF8(text);
    append("\"");
    std::size_t plain = 0;  // where the characters without escapes begin
    for (std::size_t index = 0; index < text.size(); ++index) {
      if (!needsEscape(text[index])) continue;
      append(text.substr(plain, index - plain));
      append(escapeOf(text[index]));
      plain = index + 1;
    }
    append(text.substr(plain));
    append("\"");
  }

  void append(std::string_view piece) {
    size_ += piece.size();
    if (text_ != nullptr) *text_ += piece;
  }

  std::string* text_;
  std::size_t size_ = 0;
  std::vector<OpenContainer> open_;
  bool valid_ = true;
};

}  // namespace

std::optional<std::string> writeJSON(const JSONDictionary& dictionary) {
  Writer measure(nullptr);
  if (!measure.write(dictionary)) return {};
  std::string text;
  text.reserve(measure.size());  // growing a large text would need twice its size
  (void)Writer(&text).write(dictionary);
  return text;
}

}  // namespace seldial
