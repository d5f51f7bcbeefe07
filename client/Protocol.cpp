#include "client/Protocol.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <vector>

#include "api/JSON.h"
#include "platform/VirtualKeys.h"

namespace seldial {
namespace {

using namespace platform;  // NOLINT: keys and modifiers by their short names

struct NamedModifier {
  std::string_view name;
  ModifierFlag flag;
};

/// The usual name of each modifier comes first. The modifiers are in the order of a spelling.
constexpr NamedModifier kModifierNames[] = {
    {"ctrl", kModifierFlagControl},    {"alt", kModifierFlagOption},
    {"shift", kModifierFlagShift},     {"super", kModifierFlagCommand},
    {"control", kModifierFlagControl}, {"option", kModifierFlagOption},
    {"command", kModifierFlagCommand}, {"cmd", kModifierFlagCommand},
};

struct NamedKey {
  std::string_view name;
  VirtualKey key;
};

// The usual name of each key comes first. "delete" is the PC keyboard's Delete; the key that
// deletes backwards is "backspace".
// clang-format off
constexpr NamedKey kKeyNames[] = {
    {"a", kVK_ANSI_A}, {"b", kVK_ANSI_B}, {"c", kVK_ANSI_C}, {"d", kVK_ANSI_D}, {"e", kVK_ANSI_E},
    {"f", kVK_ANSI_F}, {"g", kVK_ANSI_G}, {"h", kVK_ANSI_H}, {"i", kVK_ANSI_I}, {"j", kVK_ANSI_J},
    {"k", kVK_ANSI_K}, {"l", kVK_ANSI_L}, {"m", kVK_ANSI_M}, {"n", kVK_ANSI_N}, {"o", kVK_ANSI_O},
    {"p", kVK_ANSI_P}, {"q", kVK_ANSI_Q}, {"r", kVK_ANSI_R}, {"s", kVK_ANSI_S}, {"t", kVK_ANSI_T},
    {"u", kVK_ANSI_U}, {"v", kVK_ANSI_V}, {"w", kVK_ANSI_W}, {"x", kVK_ANSI_X}, {"y", kVK_ANSI_Y},
    {"z", kVK_ANSI_Z},
    {"0", kVK_ANSI_0}, {"1", kVK_ANSI_1}, {"2", kVK_ANSI_2}, {"3", kVK_ANSI_3}, {"4", kVK_ANSI_4},
    {"5", kVK_ANSI_5}, {"6", kVK_ANSI_6}, {"7", kVK_ANSI_7}, {"8", kVK_ANSI_8}, {"9", kVK_ANSI_9},
    {"minus", kVK_ANSI_Minus}, {"-", kVK_ANSI_Minus}, {"equal", kVK_ANSI_Equal},
    {"=", kVK_ANSI_Equal}, {"leftbracket", kVK_ANSI_LeftBracket},
    {"bracketleft", kVK_ANSI_LeftBracket}, {"[", kVK_ANSI_LeftBracket},
    {"rightbracket", kVK_ANSI_RightBracket}, {"bracketright", kVK_ANSI_RightBracket},
    {"]", kVK_ANSI_RightBracket}, {"semicolon", kVK_ANSI_Semicolon}, {";", kVK_ANSI_Semicolon},
    {"quote", kVK_ANSI_Quote}, {"apostrophe", kVK_ANSI_Quote}, {"'", kVK_ANSI_Quote},
    {"grave", kVK_ANSI_Grave}, {"`", kVK_ANSI_Grave}, {"backslash", kVK_ANSI_Backslash},
    {"\\", kVK_ANSI_Backslash}, {"comma", kVK_ANSI_Comma}, {",", kVK_ANSI_Comma},
    {"period", kVK_ANSI_Period}, {".", kVK_ANSI_Period}, {"slash", kVK_ANSI_Slash},
    {"/", kVK_ANSI_Slash},
    {"f1", kVK_F1}, {"f2", kVK_F2}, {"f3", kVK_F3}, {"f4", kVK_F4}, {"f5", kVK_F5}, {"f6", kVK_F6},
    {"f7", kVK_F7}, {"f8", kVK_F8}, {"f9", kVK_F9}, {"f10", kVK_F10}, {"f11", kVK_F11},
    {"f12", kVK_F12}, {"f13", kVK_F13}, {"f14", kVK_F14}, {"f15", kVK_F15}, {"f16", kVK_F16},
    {"f17", kVK_F17}, {"f18", kVK_F18}, {"f19", kVK_F19}, {"f20", kVK_F20},
    {"return", kVK_Return}, {"enter", kVK_Return}, {"tab", kVK_Tab}, {"space", kVK_Space},
    {"backspace", kVK_Delete}, {"escape", kVK_Escape}, {"esc", kVK_Escape},
    {"delete", kVK_ForwardDelete}, {"forwarddelete", kVK_ForwardDelete},
    {"left", kVK_LeftArrow}, {"right", kVK_RightArrow}, {"down", kVK_DownArrow}, {"up", kVK_UpArrow},
    {"home", kVK_Home}, {"end", kVK_End}, {"pageup", kVK_PageUp}, {"pagedown", kVK_PageDown},
    {"menu", kVK_ContextualMenu}, {"help", kVK_Help}, {"volumeup", kVK_VolumeUp},
    {"volumedown", kVK_VolumeDown}, {"mute", kVK_Mute}, {"capslock", kVK_CapsLock},
    {"keypad0", kVK_ANSI_Keypad0}, {"keypad1", kVK_ANSI_Keypad1}, {"keypad2", kVK_ANSI_Keypad2},
    {"keypad3", kVK_ANSI_Keypad3}, {"keypad4", kVK_ANSI_Keypad4}, {"keypad5", kVK_ANSI_Keypad5},
    {"keypad6", kVK_ANSI_Keypad6}, {"keypad7", kVK_ANSI_Keypad7}, {"keypad8", kVK_ANSI_Keypad8},
    {"keypad9", kVK_ANSI_Keypad9}, {"keypaddecimal", kVK_ANSI_KeypadDecimal},
    {"keypadmultiply", kVK_ANSI_KeypadMultiply}, {"keypadplus", kVK_ANSI_KeypadPlus},
    {"keypadclear", kVK_ANSI_KeypadClear}, {"keypaddivide", kVK_ANSI_KeypadDivide},
    {"keypadenter", kVK_ANSI_KeypadEnter}, {"keypadminus", kVK_ANSI_KeypadMinus},
    {"keypadequals", kVK_ANSI_KeypadEquals}, {"keypadcomma", kVK_JIS_KeypadComma},
    {"section", kVK_ISO_Section}, {"yen", kVK_JIS_Yen}, {"underscore", kVK_JIS_Underscore},
    {"eisu", kVK_JIS_Eisu}, {"kana", kVK_JIS_Kana},
};
// clang-format on

/// Keys of a PC keyboard that have no virtual key code.
constexpr std::string_view kKeysWithoutCode[] = {"insert",     "ins",     "print", "printscreen",
                                                 "scrolllock", "numlock", "pause"};

template <class Entry, std::size_t Count>
const Entry* findEntry(const Entry (&entries)[Count], std::string_view name) {
  const auto* const entry = std::find_if(std::begin(entries), std::end(entries),
                                         [name](const Entry& e) { return e.name == name; });
  return entry != std::end(entries) ? entry : nullptr;
}

std::string lowercasedWithoutBlanks(const std::string& spelling) {
  std::string result;
  for (const char letter : spelling) {
    if (letter == ' ' || letter == '\t') continue;
    const bool capital = letter >= 'A' && letter <= 'Z';
    result += capital ? static_cast<char>(letter - 'A' + 'a') : letter;
  }
  return result;
}

std::vector<std::string> splitAtPlus(const std::string& text) {
  std::vector<std::string> pieces{""};
  for (const char letter : text) {
    if (letter == '+') {
      pieces.emplace_back();
    } else {
      pieces.back() += letter;
    }
  }
  return pieces;
}

std::string quoted(const std::string& name) {
  return '"' + name + '"';
}

std::string keyNameError(const std::string& name) {
  if (name.empty()) return "a name is missing before or after a plus sign";
  const bool known = std::find(std::begin(kKeysWithoutCode), std::end(kKeysWithoutCode), name) !=
                     std::end(kKeysWithoutCode);
  return known ? quoted(name) + " has no virtual key code, so it cannot be a hot key"
               : quoted(name) + " is neither a modifier nor a key";
}

/// The text under `key`; empty if there is none.
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

std::optional<HotKey> hotKeyFromSpelling(const std::string& spelling, std::string& error) {
  HotKey hotKey;
  std::string key;  // the part that is not a modifier, once it was found
  for (const std::string& piece : splitAtPlus(lowercasedWithoutBlanks(spelling))) {
    if (const auto* const modifier = findEntry(kModifierNames, piece)) {
      hotKey.modifierFlags |= modifier->flag;
      continue;
    }
    const auto* const named = findEntry(kKeyNames, piece);
    if (named == nullptr) {
      error = keyNameError(piece);
      return std::nullopt;
    }
    if (!key.empty()) {
      error = quoted(key) + " and " + quoted(piece) + " are two keys, a hot key has one";
      return std::nullopt;
    }
    key = piece;
    hotKey.virtualKey = named->key;
  }
  if (key.empty()) {
    error = "there are only modifiers; a hot key needs a key";
    return std::nullopt;
  }
  return hotKey;
}

std::optional<std::string> hotKeySpelling(const HotKey& hotKey) {
  const auto* const key =
      std::find_if(std::begin(kKeyNames), std::end(kKeyNames),
                   [&hotKey](const NamedKey& entry) { return entry.key == hotKey.virtualKey; });
  if (key == std::end(kKeyNames)) return std::nullopt;
  std::string spelling;
  std::uint64_t left = hotKey.modifierFlags;
  for (const auto& modifier : kModifierNames) {
    if ((left & modifier.flag) != 0) spelling.append(modifier.name).append("+");
    left &= ~std::uint64_t{modifier.flag};  // other names of the same modifier follow
  }
  return spelling.append(key->name);
}

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
  return *writeJSON(command);  // fails only on invalid UTF-8, which is not possible here
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
