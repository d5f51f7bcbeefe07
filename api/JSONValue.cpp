#include <utility>

#include "api/JSON.h"

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

JSONValue& JSONValue::operator=(JSONValue&& other) noexcept {
  // Moved out first: `other` may be a part of this value.
  Content taken = std::exchange(other.content_, Content());
  const JSONValue before(std::move(*this));
  content_ = std::move(taken);
  return *this;
}

bool JSONValue::isContainer() const {
  return dictionary() != nullptr || array() != nullptr;
}

// Uses a list instead of recursion: a text of a few megabytes can nest deeper than any stack
// allows.
JSONValue::~JSONValue() {
  if (!isContainer()) return;
  std::vector<JSONValue> nested;
  moveContainersTo(nested);
  while (!nested.empty()) {
    JSONValue next = std::move(nested.back());
    nested.pop_back();
    next.moveContainersTo(nested);
  }
}

void JSONValue::moveContainersTo(std::vector<JSONValue>& containers) {
  const auto take = [&containers](JSONValue& value) {
    if (value.isContainer()) containers.push_back(std::move(value));
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

std::string* JSONValue::text() {
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
