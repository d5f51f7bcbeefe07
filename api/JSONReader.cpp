#include "api/JSONReader.h"

#include <limits>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

#include "api/ExactInteger.h"

namespace seldial {

namespace {

using Parser = nlohmann::json;

/// Builds the value from what the parser reports, with a list of the open containers in place of
/// recursion.
class Builder final : public nlohmann::json_sax<Parser> {
 public:
  explicit Builder(std::size_t levels) : levels_(levels) {}

  JSONValue root;

  bool null() override { return scalar(JSONValue()); }
  bool boolean(bool value) override { return scalar(JSONValue(value)); }
  bool number_integer(number_integer_t value) override {
    return scalar(JSONValue(std::int64_t{value}));
  }
  bool number_unsigned(number_unsigned_t value) override {
    constexpr auto kMost = std::numeric_limits<std::int64_t>::max();
    if (value <= number_unsigned_t{kMost})
      return number_integer(static_cast<number_integer_t>(value));
    return scalar(JSONValue(static_cast<double>(value)));
  }
  bool number_float(number_float_t value, const string_t& digits) override {
    if (const auto integer = exactInteger(digits)) return scalar(JSONValue(*integer));
    return scalar(JSONValue(value));
  }
  bool string(string_t& value) override { return scalar(JSONValue(std::move(value))); }
  bool key(string_t& value) override {
    if (skipped_ == 0) member_ = &(*open_.back()->dictionary())[std::move(value)];
    return true;
  }

  bool start_object(std::size_t /*size*/) override { return open(JSONValue(JSONDictionary())); }
  bool start_array(std::size_t /*size*/) override { return open(JSONValue(JSONArray())); }
  bool end_object() override { return close(); }
  bool end_array() override { return close(); }

  bool binary(binary_t& /*value*/) override { return false; }  // no part of JSON texts
  bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                   const nlohmann::detail::exception& /*error*/) override {
    return false;
  }

 private:
  // Where the next value belongs.
  JSONValue& place() {
    if (open_.empty()) return root;
    if (auto* array = open_.back()->array()) return array->emplace_back();
    return *member_;
  }
  bool scalar(JSONValue value) {
    if (skipped_ > 0) return true;
    place() = std::move(value);
    return !open_.empty();  // alone at the top level it is no text of ours
  }
  bool open(JSONValue container) {
    if (open_.size() == levels_) {
      if (skipped_++ == 0) place() = JSONValue();
      return true;
    }
    JSONValue& opened = place();
    opened = std::move(container);
    open_.push_back(&opened);
    return true;
  }
  bool close() {
    if (skipped_ > 0) {
      --skipped_;
    } else {
      open_.pop_back();
    }
    return true;
  }

  // A container does not grow while one inside it is open, so these stay where they are.
  std::vector<JSONValue*> open_;
  JSONValue* member_ = nullptr;
  std::size_t levels_;
  std::size_t skipped_ = 0;  // open containers that are too deep to be kept
};

// Every open bracket takes fifty bytes and more once it is built, but a bit to be checked: a long
// text proves itself first, so that one full of brackets costs no memory.
constexpr std::size_t kBuiltUnchecked = 4096;

}  // namespace

std::optional<JSONValue> readJSON(const std::string& text, std::size_t levels) {
  // The parser takes a raw NUL for the end of its input.
  if (text.find('\0') != std::string::npos) return {};
  const char* const begin = text.data();
  const char* const end = begin + text.size();
  if (text.size() > kBuiltUnchecked && !Parser::accept(begin, end)) return {};
  Builder builder(levels);
  if (!Parser::sax_parse(begin, end, &builder)) return {};
  return std::move(builder.root);
}

}  // namespace seldial
