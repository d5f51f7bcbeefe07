#include "api/SetHotKeyApi.h"

#include "api/FatalError.h"
#include "api/JSONReader.h"
#include "api/KeyPath.h"

namespace seldial {

namespace {

// No key of a command lies deeper, so that a nest of brackets beside them costs no memory.
constexpr std::size_t kLevels = 1;

std::optional<std::string> textAt(const char* key, const JSONDictionary& dictionary) {
  const JSONValue* value = valueForKeyPath(key, dictionary);
  const std::string* text = value != nullptr ? value->text() : nullptr;
  return text != nullptr ? std::optional<std::string>(*text) : std::nullopt;
}

// The numbers 1 and 0 count as booleans here; what is neither counts as false.
bool flagAt(const char* key, const JSONDictionary& dictionary) {
  const JSONValue* value = valueForKeyPath(key, dictionary);
  if (value == nullptr) return false;
  return value->boolean().value_or(false) || value->integer() == 1;
}

std::uint16_t numberAt(const char* key, const JSONDictionary& dictionary, std::uint16_t otherwise) {
  const JSONValue* value = valueForKeyPath(key, dictionary);
  const auto number = value != nullptr ? value->integer() : std::nullopt;
  // A negative number is a very large one here.
  if (!number || static_cast<std::uint64_t>(*number) > UINT16_MAX) return otherwise;
  return static_cast<std::uint16_t>(*number);
}

}  // namespace

SetHotKeyApi SetHotKeyApi::fromJSONString(const std::string& text) {
  const auto value = readJSON(text, kLevels);
  if (!value) return {};
  const JSONDictionary* dictionary = value->dictionary();
  if (dictionary == nullptr)
    fatalError("fatal error: a command must be a JSON object, not an array");

  SetHotKeyApi record;
  record.Command = textAt("command", *dictionary);
  record.ModifierAlt = flagAt("modifierAlt", *dictionary);
  record.ModifierCommand = flagAt("modifierCommand", *dictionary);
  record.ModifierCtrl = flagAt("modifierCtrl", *dictionary);
  record.ModifierShift = flagAt("modifierShift", *dictionary);
  record.VirtualKey = numberAt("virtualkey", *dictionary, kNoVirtualKey);
  record.ReadDelay = numberAt("readdelay", *dictionary, kDefaultReadDelay);
  return record;
}

}  // namespace seldial
