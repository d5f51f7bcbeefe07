#include "api/MessageRecords.h"

#include <utility>

#include "api/FatalError.h"
#include "api/KeyPath.h"
#include "api/Timestamps.h"

namespace seldial {
namespace {

// Moves the text out of the dictionary: it may be large.
std::optional<std::string> takeTextAt(const char* key, JSONDictionary& dictionary) {
  JSONValue* value = valueForKeyPath(key, dictionary);
  std::string* text = value != nullptr ? value->text() : nullptr;
  return text != nullptr ? std::optional<std::string>(std::move(*text)) : std::nullopt;
}

// The numbers 1 and 0 count as true and false; everything else is false.
bool flagAt(const char* key, const JSONDictionary& dictionary) {
  const JSONValue* value = valueForKeyPath(key, dictionary);
  if (value == nullptr) return false;
  return value->boolean().value_or(false) || value->integer() == 1;
}

std::uint16_t numberAt(const char* key, const JSONDictionary& dictionary, std::uint16_t fallback) {
  const JSONValue* value = valueForKeyPath(key, dictionary);
  const auto number = value != nullptr ? value->integer() : std::nullopt;
  if (!number || *number < 0 || *number > UINT16_MAX) return fallback;
  return static_cast<std::uint16_t>(*number);
}

// Writes a message with the time `now` as "datetime", its kind ("response" or "event") and name.
// If that fails, the line is `{"datetime":"`, the same time and `fallback`.
JSONString stampedMessage(std::time_t now, const char* kind, const char* name, std::string message,
                          const char* fallback) {
  const std::string datetime = messageTimestamp(now);
  JSONDictionary dictionary;
  dictionary["datetime"] = datetime;
  dictionary[kind] = name;
  dictionary["message"] = std::move(message);
  if (auto text = JSONString::from(std::move(dictionary))) return *std::move(text);
  return R"({"datetime":")" + datetime + fallback;
}

}  // namespace

SetHotKeyApi SetHotKeyApi::fromJSONString(const std::string& text) {
  auto value = readJSONMembers(text, {"command", "modifierAlt", "modifierCommand", "modifierCtrl",
                                      "modifierShift", "virtualkey", "readdelay"});
  if (!value) return {};
  JSONDictionary* dictionary = value->dictionary();
  if (dictionary == nullptr) {
    fatalError("fatal error: a command must be a JSON object, not an array");
  }
  SetHotKeyApi record;
  record.Command = takeTextAt("command", *dictionary);
  record.ModifierAlt = flagAt("modifierAlt", *dictionary);
  record.ModifierCommand = flagAt("modifierCommand", *dictionary);
  record.ModifierCtrl = flagAt("modifierCtrl", *dictionary);
  record.ModifierShift = flagAt("modifierShift", *dictionary);
  record.VirtualKey = numberAt("virtualkey", *dictionary, kNoVirtualKey);
  record.ReadDelay = numberAt("readdelay", *dictionary, kDefaultReadDelay);
  return record;
}

std::optional<JSONString> HotKeyStateApi::toJSONString() const {
  JSONDictionary dictionary;
  dictionary["response"] = "HotkeyState";
  dictionary["result"] = Result;
  if (FailReason) dictionary["failreason"] = *FailReason;
  return JSONString::from(std::move(dictionary));
}

JSONString ErrorApi::toJSONString(std::time_t now) && {
  return stampedMessage(now, "response", "Error", std::move(Message),
                        R"(","response":"Error","message":"cascading error while serializing"})");
}

std::optional<JSONString> MakeCallApi::toJSONString() && {
  JSONDictionary dictionary;
  dictionary["command"] = "MakeCall";  // a command, not a response: the client acts on it
  dictionary["number"] = std::move(Number).value_or("");
  return JSONString::from(std::move(dictionary));
}

JSONString LogApi::toJSONString(std::time_t now) && {
  return stampedMessage(now, "event", "Log", std::move(Message),
                        R"(","event":"Log","message":"error while serializing [log]"})");
}

const char* rawValue(ClickToDialSource source) {
  switch (source) {
    case ClickToDialSource::CommandLine:
      return "CommandLine";
    case ClickToDialSource::Pasteboard:
      return "Pasteboard";
    case ClickToDialSource::StdIO:
      return "StdIO";
  }
  return "";
}

std::optional<ClickToDialSource> clickToDialSource(std::string_view rawValue) {
  for (const auto source :
       {ClickToDialSource::CommandLine, ClickToDialSource::Pasteboard, ClickToDialSource::StdIO}) {
    if (rawValue == seldial::rawValue(source)) return source;
  }
  return {};
}

}  // namespace seldial
