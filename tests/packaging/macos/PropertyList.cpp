#include "tests/packaging/macos/PropertyList.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace seldial {
namespace {

class Parser {
 public:
  explicit Parser(std::string text) : text_(std::move(text)) {}

  PropertyList document() {
    take("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
    take(
        "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
        "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">");
    take("<plist version=\"1.0\">");
    auto result = value();
    take("</plist>");
    skip();
    if (at_ != text_.size()) fail("its end");
    return result;
  }

 private:
  PropertyList value() {
    for (const char* const truth : {"true", "false"}) {
      if (takes(std::string("<") + truth + "/>")) return {truth, "", {}, {}};
    }
    PropertyList result;
    if (takes("<string>")) {
      result.kind = "string";
      result.text = textUntil("</string>");
    } else if (takes("<array>")) {
      result.kind = "array";
      while (!takes("</array>")) result.items.push_back(value());
    } else {
      take("<dict>");
      result.kind = "dict";
      while (!takes("</dict>")) addEntry(result);
    }
    return result;
  }

  void addEntry(PropertyList& dictionary) {
    take("<key>");
    const std::string key = textUntil("</key>");
    if (!dictionary.entries.emplace(key, value()).second) fail("another key than " + key);
  }

  std::string textUntil(const std::string& end) {
    const auto to = text_.find('<', at_);
    std::string text = text_.substr(at_, to - at_);
    at_ = to;
    take(end);
    return text;
  }

  bool takes(const std::string& expected) {
    skip();
    if (text_.compare(at_, expected.size(), expected) != 0) return false;
    at_ += expected.size();
    return true;
  }

  void take(const std::string& expected) {
    if (!takes(expected)) fail(expected);
  }

  /// White space and comments.
  void skip() {
    at_ = std::min(text_.find_first_not_of(" \n", at_), text_.size());
    if (text_.compare(at_, 4, "<!--") != 0) return;
    at_ = text_.find("-->", at_);
    if (at_ == std::string::npos) throw std::runtime_error("a comment without an end");
    at_ += 3;
    skip();
  }

  [[noreturn]] void fail(const std::string& expected) const {
    throw std::runtime_error("not " + expected + " but " + text_.substr(at_, 40));
  }

  const std::string text_;
  std::size_t at_ = 0;
};

}  // namespace

PropertyList PropertyList::read(const std::string& path) {
  std::ifstream file(path);
  return Parser(std::string(std::istreambuf_iterator<char>(file), {})).document();
}

std::string PropertyList::operator[](const std::string& key) const {
  const auto entry = entries.find(key);
  if (entry == entries.end()) return "";
  return entry->second.kind == "string" ? entry->second.text : entry->second.kind;
}

}  // namespace seldial
