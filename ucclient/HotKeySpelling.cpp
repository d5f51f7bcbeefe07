#include "ucclient/HotKeySpelling.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "ucclient/VirtualKeys.h"

namespace seldial {
namespace {

struct NamedModifier {
  const char* name;
  bool HotKey::*flag;
};

constexpr NamedModifier kModifiers[] = {{"ctrl", &HotKey::ctrl},       {"control", &HotKey::ctrl},
                                        {"alt", &HotKey::alt},         {"option", &HotKey::alt},
                                        {"shift", &HotKey::shift},     {"super", &HotKey::command},
                                        {"command", &HotKey::command}, {"cmd", &HotKey::command}};

/// Keys of a PC keyboard for which the table of virtual key codes has no entry.
constexpr const char* kKeysWithoutCode[] = {"insert",     "ins",     "print", "printscreen",
                                            "scrolllock", "numlock", "pause"};

template <class Range>
auto entryNamed(const Range& range, const std::string& name) {
  return std::find_if(std::begin(range), std::end(range),
                      [&name](const auto& entry) { return entry.name == name; });
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

std::string whyNoKey(const std::string& name) {
  if (name.empty()) return "a name is missing before or after a plus sign";
  const bool known = std::find(std::begin(kKeysWithoutCode), std::end(kKeysWithoutCode), name) !=
                     std::end(kKeysWithoutCode);
  return known ? quoted(name) + " has no virtual key code, so it cannot be a hot key"
               : quoted(name) + " is neither a modifier nor a key";
}

}  // namespace

std::optional<HotKey> hotKeyFromSpelling(const std::string& spelling, std::string& error) {
  HotKey hotKey;
  std::string key;  // the one piece that is no modifier, once it was found
  for (const std::string& piece : splitAtPlus(lowercasedWithoutBlanks(spelling))) {
    const auto* const modifier = entryNamed(kModifiers, piece);
    if (modifier != std::end(kModifiers)) {
      hotKey.*modifier->flag = true;
      continue;
    }
    const auto virtualKey = virtualKeyNamed(piece);
    if (!virtualKey) {
      error = whyNoKey(piece);
      return std::nullopt;
    }
    if (!key.empty()) {
      error = quoted(key) + " and " + quoted(piece) + " are two keys, a hot key has one";
      return std::nullopt;
    }
    key = piece;
    hotKey.virtualKey = *virtualKey;
  }
  if (key.empty()) {
    error = "there are only modifiers in it, a hot key needs a key";
    return std::nullopt;
  }
  return hotKey;
}

}  // namespace seldial
