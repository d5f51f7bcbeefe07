#include "platform/wayland/SwayConfig.h"

#include <strings.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <map>
#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/VirtualKeys.h"

namespace seldial::platform::wayland {
namespace {

struct ModifierName {
  const char* name;
  std::uint32_t modifier;  ///< a HotKeyModifier, or kOtherModifier
};

/// Stands for modifiers that no hot key has.
constexpr std::uint32_t kOtherModifier = 1;

/// The first name of each modifier is the one that combinations are written with.
constexpr std::array kModifierNames{
    ModifierName{"Ctrl", kHotKeyControl},    ModifierName{"Mod1", kHotKeyOption},
    ModifierName{"Shift", kHotKeyShift},     ModifierName{"Mod4", kHotKeyCommand},
    ModifierName{"Control", kHotKeyControl}, ModifierName{"Alt", kHotKeyOption},
    ModifierName{"Super", kHotKeyCommand},   ModifierName{"Lock", kOtherModifier},
    ModifierName{"Mod2", kOtherModifier},    ModifierName{"Mod3", kOtherModifier},
    ModifierName{"Mod5", kOtherModifier},
};
constexpr std::size_t kWrittenNames = 4;

std::vector<std::string> wordsOf(const std::string& line) {
  std::istringstream stream(line);
  std::vector<std::string> words;
  for (std::string word; stream >> word;) words.push_back(word);
  return words;
}

/// Reads a configuration line by line.
class Reader {
 public:
  Reader(const SwayCombination& combination, const KeyHasSymbol& keyHasSymbol)
      : combination_(combination), keyHasSymbol_(keyHasSymbol) {}

  /// Whether the line binds the combination.
  bool reads(const std::string& line) {
    auto words = wordsOf(line);
    if (words.empty() || words[0].starts_with('#')) return false;
    if (words[0] == "}") {
      if (!blocks_.empty()) blocks_.pop_back();
      return false;
    }
    // A block repeats its first words before each of its lines.
    if (!blocks_.empty()) words.insert(words.begin(), blocks_.back().begin(), blocks_.back().end());
    if (words.back() == "{") {
      words.pop_back();
      blocks_.push_back(std::move(words));
      return false;
    }
    if (words[0] == "set" && words.size() > 2) variables_[words[1]] = words[2];
    return (words[0] == "bindsym" || words[0] == "bindcode") && binds(words);
  }

 private:
  [[nodiscard]] bool binds(const std::vector<std::string>& words) const {
    const auto keys = std::find_if(words.begin() + 1, words.end(),
                                   [](const auto& word) { return !word.starts_with("--"); });
    return keys != words.end() && means(withValues(*keys), words[0] == "bindcode");
  }

  /// The text with the values of variables in place of their names, the longest name first.
  [[nodiscard]] std::string withValues(std::string text) const {
    for (const auto& [name, value] : variables_) {
      for (auto at = text.find(name); at != std::string::npos;
           at = text.find(name, at + value.size())) {
        text.replace(at, name.size(), value);
      }
    }
    return text;
  }

  [[nodiscard]] bool means(const std::string& keys, bool byCode) const {
    std::istringstream stream(keys);
    std::uint32_t modifiers = 0;
    std::size_t matching = 0;
    std::size_t others = 0;
    for (std::string name; std::getline(stream, name, '+');) {
      const auto* const found = std::find_if(
          kModifierNames.begin(), kModifierNames.end(),
          [&](const auto& modifier) { return strcasecmp(modifier.name, name.c_str()) == 0; });
      if (found != kModifierNames.end()) {
        modifiers |= found->modifier;
      } else {
        ++(isKey(name, byCode) ? matching : others);
      }
    }
    return modifiers == combination_.modifiers && matching == 1 && others == 0;
  }

  [[nodiscard]] bool isKey(const std::string& name, bool byCode) const {
    if (!byCode) return keyHasSymbol_(combination_.key, name);
    std::uint32_t key = 0;
    std::from_chars(name.data(), name.data() + name.size(), key);
    return key == combination_.key;
  }

  const SwayCombination& combination_;
  const KeyHasSymbol& keyHasSymbol_;
  std::map<std::string, std::string, std::greater<>> variables_;  ///< longer names first
  std::vector<std::vector<std::string>> blocks_;  ///< the first words of the blocks around a line
};

}  // namespace

std::string SwayCombination::text() const {
  std::string text;
  for (std::size_t i = 0; i < kWrittenNames; ++i) {
    if ((modifiers & kModifierNames[i].modifier) != 0)
      text += kModifierNames[i].name + std::string("+");
  }
  return text + std::to_string(key);
}

std::optional<std::string> findBinding(const std::string& configuration,
                                       const SwayCombination& combination,
                                       const KeyHasSymbol& keyHasSymbol) {
  std::istringstream lines(configuration);
  Reader reader(combination, keyHasSymbol);
  for (std::string line; std::getline(lines, line);) {
    while (line.ends_with('\\')) {
      std::string rest;
      line.pop_back();
      if (std::getline(lines, rest)) line += rest;
    }
    if (reader.reads(line)) return line;
  }
  return {};
}

}  // namespace seldial::platform::wayland
