#include "client/Messages.h"

#include "api/JSON.h"
#include "platform/VirtualKeys.h"

namespace seldial {
namespace {

/// The text under `key`, empty when there is none.
std::string textAt(const JSONDictionary& dictionary, const char* key) {
  const auto entry = dictionary.find(key);
  const auto* const text = entry != dictionary.end() ? entry->second.text() : nullptr;
  return text != nullptr ? *text : std::string();
}

bool flagAt(const JSONDictionary& dictionary, const char* key) {
  const auto entry = dictionary.find(key);
  return entry != dictionary.end() && entry->second.boolean().value_or(false);
}

/// Empty for a text that is not a JSON object.
JSONDictionary dictionaryFromJSON(const std::string& json) {
  auto value = readJSON(json);
  auto* const dictionary = value ? value->dictionary() : nullptr;
  return dictionary != nullptr ? std::move(*dictionary) : JSONDictionary();
}

}  // namespace

std::string setHotKeyCommand(const HotKey& hotKey, std::uint16_t readDelay) {
  const auto has = [&hotKey](platform::ModifierFlag flag) {
    return (hotKey.modifierFlags & flag) != 0;
  };
  JSONDictionary command;
  command["command"] = "SetHotKey";
  command["modifierAlt"] = has(platform::kModifierFlagOption);
  command["modifierCommand"] = has(platform::kModifierFlagCommand);
  command["modifierCtrl"] = has(platform::kModifierFlagControl);
  command["modifierShift"] = has(platform::kModifierFlagShift);
  command["virtualkey"] = int{hotKey.virtualKey};
  command["readdelay"] = int{readDelay};
  return *writeJSON(command);  // fails only on texts that are not UTF-8, and here are none
}

Message messageFromJSON(const std::string& json) {
  const JSONDictionary dictionary = dictionaryFromJSON(json);
  if (textAt(dictionary, "command") == "MakeCall") {
    return {Message::Kind::MakeCall, textAt(dictionary, "number")};
  }
  const std::string response = textAt(dictionary, "response");
  if (response == "Error") return {Message::Kind::Error, textAt(dictionary, "message")};
  if (response != "HotkeyState") return {};
  if (flagAt(dictionary, "result")) return {Message::Kind::HotKeySet, ""};
  return {Message::Kind::HotKeyNotSet, textAt(dictionary, "failreason")};
}

std::optional<std::string> loggedMessage(const std::string& line) {
  const JSONDictionary dictionary = dictionaryFromJSON(line);
  if (textAt(dictionary, "event") != "Log") return std::nullopt;
  return textAt(dictionary, "message");
}

}  // namespace seldial
