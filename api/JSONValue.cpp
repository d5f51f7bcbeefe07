#include "api/JSONValue.h"

#include <utility>

namespace seldial {

JSONValue::JSONValue() noexcept = default;
JSONValue::JSONValue(bool value) noexcept : content_(value) {}
JSONValue::JSONValue(int value) noexcept : content_(std::int64_t{value}) {}
JSONValue::JSONValue(std::int64_t value) noexcept : content_(value) {}
JSONValue::JSONValue(double value) noexcept : content_(value) {}
JSONValue::JSONValue(std::string value)
    : content_(std::make_unique<std::string>(std::move(value))) {}
JSONValue::JSONValue(const char* value) : content_(std::make_unique<std::string>(value)) {}
JSONValue::JSONValue(JSONDictionary value)
    : content_(std::make_unique<JSONDictionary>(std::move(value))) {}
JSONValue::JSONValue(JSONArray value) : content_(std::make_unique<JSONArray>(std::move(value))) {}

JSONValue::JSONValue(JSONValue&& other) noexcept : content_(std::move(other.content_)) {
  other.content_ = Content();
}

JSONValue& JSONValue::operator=(const JSONValue& other) {
  return *this = JSONValue(other);
}

JSONValue& JSONValue::operator=(JSONValue&& other) noexcept {
  // Taken first: `other` may lie inside what this value holds so far.
  Content taken = std::exchange(other.content_, Content());
  const JSONValue before(std::move(*this));
  content_ = std::move(taken);
  return *this;
}

// Both the copy and the destruction walk the levels with a list of their own: a text of a few
// megabytes nests deeper than any thread's stack.

struct JSONValue::Copying {
  const JSONValue* from;
  JSONValue* to;
};

JSONValue::JSONValue(const JSONValue& other) {
  std::vector<Copying> deeper;
  copyLevel(other, deeper);
  while (!deeper.empty()) {
    const Copying next = deeper.back();
    deeper.pop_back();
    next.to->copyLevel(*next.from, deeper);
  }
}

void JSONValue::copyLevel(const JSONValue& from, std::vector<Copying>& deeper) {
  if (const auto* dictionary = from.dictionary()) {
    auto copy = std::make_unique<JSONDictionary>();
    for (const auto& [key, value] : *dictionary) {
      deeper.push_back({&value, &copy->emplace_hint(copy->end(), key, JSONValue())->second});
    }
    content_ = std::move(copy);
  } else if (const auto* array = from.array()) {
    auto copy = std::make_unique<JSONArray>(array->size());
    for (std::size_t index = 0; index < array->size(); ++index) {
      deeper.push_back({&(*array)[index], &(*copy)[index]});
    }
    content_ = std::move(copy);
  } else if (const auto* text = from.text()) {
    content_ = std::make_unique<std::string>(*text);
  } else if (const auto* boolean = std::get_if<bool>(&from.content_)) {
    content_ = *boolean;
  } else if (const auto* integer = std::get_if<std::int64_t>(&from.content_)) {
    content_ = *integer;
  } else if (const auto* real = std::get_if<double>(&from.content_)) {
    content_ = *real;
  }
}

bool JSONValue::isContainer() const {
  return dictionary() != nullptr || array() != nullptr;
}

JSONValue::~JSONValue() {
  if (!isContainer()) return;
  std::vector<JSONValue> nested;
  takeContainers(nested);
  while (!nested.empty()) {
    JSONValue next = std::move(nested.back());
    nested.pop_back();
    next.takeContainers(nested);
  }
}

void JSONValue::takeContainers(std::vector<JSONValue>& taken) {
  const auto take = [&taken](JSONValue& value) {
    if (value.isContainer()) taken.push_back(std::move(value));
  };
  if (auto* members = dictionary()) {
    for (auto& member : *members) take(member.second);
  } else if (auto* elements = array()) {
    for (auto& element : *elements) take(element);
  }
}

bool JSONValue::isNull() const {
  return content_.index() == 0;
}

std::optional<bool> JSONValue::boolean() const {
  const auto* boolean = std::get_if<bool>(&content_);
  return boolean != nullptr ? std::optional<bool>(*boolean) : std::nullopt;
}

std::optional<std::int64_t> JSONValue::integer() const {
  const auto* integer = std::get_if<std::int64_t>(&content_);
  return integer != nullptr ? std::optional<std::int64_t>(*integer) : std::nullopt;
}

std::optional<double> JSONValue::number() const {
  if (const auto whole = integer()) return static_cast<double>(*whole);
  const auto* real = std::get_if<double>(&content_);
  return real != nullptr ? std::optional<double>(*real) : std::nullopt;
}

const std::string* JSONValue::text() const {
  const auto* text = std::get_if<std::unique_ptr<std::string>>(&content_);
  return text != nullptr ? text->get() : nullptr;
}

const JSONDictionary* JSONValue::dictionary() const {
  const auto* dictionary = std::get_if<std::unique_ptr<JSONDictionary>>(&content_);
  return dictionary != nullptr ? dictionary->get() : nullptr;
}

JSONDictionary* JSONValue::dictionary() {
  auto* dictionary = std::get_if<std::unique_ptr<JSONDictionary>>(&content_);
  return dictionary != nullptr ? dictionary->get() : nullptr;
}

const JSONArray* JSONValue::array() const {
  const auto* array = std::get_if<std::unique_ptr<JSONArray>>(&content_);
  return array != nullptr ? array->get() : nullptr;
}

JSONArray* JSONValue::array() {
  auto* array = std::get_if<std::unique_ptr<JSONArray>>(&content_);
  return array != nullptr ? array->get() : nullptr;
}

}  // namespace seldial
