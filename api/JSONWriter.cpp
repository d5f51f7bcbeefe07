#include <array>
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

/// Collects the text and passes it to `sink` in pieces of equal size, except the last one.
class Pieces {
 public:
  explicit Pieces(const JSONString::Sink& sink) : sink_(sink) {}

  void append(std::string_view text) {
    while (!text.empty() && wanted_) {
      const std::size_t count = text.copy(piece_.data() + size_, piece_.size() - size_);
      size_ += count;
      text.remove_prefix(count);
      if (size_ == piece_.size()) finish();
    }
  }

  /// Passes on the rest.
  void finish() {
    if (size_ > 0 && wanted_) wanted_ = sink_({piece_.data(), size_});
    size_ = 0;
  }

  /// False once `sink` has returned false.
  [[nodiscard]] bool wanted() const { return wanted_; }

 private:
  const JSONString::Sink& sink_;
  std::array<char, 16384> piece_;  // NOLINT(*-member-init): filled before it is read
  std::size_t size_ = 0;
  bool wanted_ = true;
};

/// Writes a dictionary in pieces. Keeps the open containers in a list instead of recursing.
class Writer {
 public:
  explicit Writer(const JSONString::Sink& sink) : pieces_(sink) {}

  /// False if the dictionary cannot be written; the text is then incomplete.
  bool write(const JSONDictionary& dictionary) {
    open(&dictionary, nullptr);
    while (valid_ && pieces_.wanted() && !open_.empty()) writeNext();
    pieces_.finish();
    return valid_;
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
    for (std::size_t index = 0; index < text.size() && pieces_.wanted(); ++index) {
      if (!needsEscape(text[index])) continue;
      append(text.substr(plain, index - plain));
      append(escapeOf(text[index]));
      plain = index + 1;
    }
    append(text.substr(plain));
    append("\"");
  }

  void append(std::string_view text) { pieces_.append(text); }

  Pieces pieces_;
  std::vector<OpenContainer> open_;
  bool valid_ = true;
};

}  // namespace

std::optional<std::string> writeJSON(const JSONDictionary& dictionary) {
  std::string text;
  const JSONString::Sink append = [&text](std::string_view piece) {
    text += piece;
    return true;
  };
  if (!Writer(append).write(dictionary)) return {};
  return text;
}

JSONString::JSONString(std::string text) : content_(std::move(text)) {}
JSONString::JSONString(const char* text) : content_(std::string(text)) {}
JSONString::JSONString(JSONDictionary dictionary) : content_(std::move(dictionary)) {}

std::optional<JSONString> JSONString::from(JSONDictionary dictionary) {
  std::string text;
  bool isShort = true;
  const Sink keepFirst = [&](std::string_view piece) {
    isShort = text.empty();
    if (isShort) text = piece;
    return true;
  };
  if (!Writer(keepFirst).write(dictionary)) return {};
  return isShort ? JSONString(std::move(text)) : JSONString(std::move(dictionary));
}

void JSONString::forEachPiece(const Sink& sink) const {
  if (const auto* dictionary = std::get_if<JSONDictionary>(&content_)) {
    (void)Writer(sink).write(*dictionary);
  } else if (const auto* text = std::get_if<std::string>(&content_)) {
    Pieces pieces(sink);
    pieces.append(*text);
    pieces.finish();
  }
}

std::string JSONString::string() const {
  std::string text;
  forEachPiece([&text](std::string_view piece) {
    text += piece;
    return true;
  });
  return text;
}

}  // namespace seldial
