#include "platform/wayland/SwayConfig.h"

#include <strings.h>
#include <wordexp.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
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

/// Represents modifiers that no hot key has.
constexpr std::uint32_t kOtherModifier = 1;

/// The first name of each modifier is the one used in written combinations.
constexpr std::array kModifierNames{
    ModifierName{"Ctrl", kHotKeyControl},    ModifierName{"Mod1", kHotKeyOption},
    ModifierName{"Shift", kHotKeyShift},     ModifierName{"Mod4", kHotKeyCommand},
    ModifierName{"Control", kHotKeyControl}, ModifierName{"Alt", kHotKeyOption},
    ModifierName{"Super", kHotKeyCommand},   ModifierName{"Lock", kOtherModifier},
    ModifierName{"Mod2", kOtherModifier},    ModifierName{"Mod3", kOtherModifier},
    ModifierName{"Mod5", kOtherModifier},
};
constexpr std::size_t kCanonicalNames = 4;

std::vector<std::string> splitWords(const std::string& line) {
  std::istringstream stream(line);
  std::vector<std::string> words;
  for (std::string word; stream >> word;) words.push_back(word);
  return words;
}

/// The files that an include matches. sway expands it like a shell, but runs no commands.
std::vector<std::string> includedFiles(const std::string& name, const std::string& directory) {
  const bool isRelative = name.find_first_of("/~$") != 0;
  wordexp_t words{};
  if (wordexp((isRelative ? directory + "/" + name : name).c_str(), &words, WRDE_NOCMD) != 0) {
    return {};
  }
  std::vector<std::string> files;
  files.reserve(words.we_wordc);
  for (std::size_t i = 0; i < words.we_wordc; ++i) {
    files.push_back(std::filesystem::path(words.we_wordv[i]).lexically_normal());
  }
  wordfree(&words);
  return files;
}

std::string contentOf(const std::string& file) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(file, error)) return {};
  std::ifstream stream(file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// Reads a configuration line by line.
class Reader {
 public:
  Reader(const SwayCombination& combination, const HasSymbol& hasSymbol)
      : combination_(combination), hasSymbol_(hasSymbol) {}

  /// The first line that binds the combination.
  std::optional<std::string> read(const SwayConfiguration& configuration) {
    std::istringstream lines(configuration.text);
    directory_ = configuration.directory;
    for (std::string line; std::getline(lines, line);) {
      while (line.ends_with('\\')) {
        std::string rest;
        line.pop_back();
        if (std::getline(lines, rest)) line += rest;
      }
      if (binds(line)) return line;
      for (const auto& file : std::exchange(included_, {})) {
        if (!seen_.insert(file).second) continue;  // as sway does
        if (auto found = read({contentOf(file), directoryOf(file)})) return found;
      }
      directory_ = configuration.directory;
    }
    return {};
  }

 private:
  static std::string directoryOf(const std::string& file) {
    return std::filesystem::path(file).parent_path();
  }

  bool binds(const std::string& line) {
    auto words = splitWords(line);
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
    if (words[0] == "include" && words.size() > 1) {
      included_ = includedFiles(withValues(words[1]), directory_);
    }
    return (words[0] == "bindsym" || words[0] == "bindcode") && binds(words);
  }

  [[nodiscard]] bool binds(const std::vector<std::string>& words) const {
    const auto keys = std::find_if(words.begin() + 1, words.end(),
                                   [](const auto& word) { return !word.starts_with("--"); });
    return keys != words.end() && matches(withValues(*keys), words[0] == "bindcode");
  }

  /// Replaces the names of variables by their values, the longest name first.
  [[nodiscard]] std::string withValues(std::string text) const {
    for (const auto& [name, value] : variables_) {
      for (auto at = text.find(name); at != std::string::npos;
           at = text.find(name, at + value.size())) {
        text.replace(at, name.size(), value);
      }
    }
    return text;
  }

  [[nodiscard]] bool matches(const std::string& keys, bool byCode) const {
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
    if (!byCode) return hasSymbol_(name);
    std::uint32_t key = 0;
    std::from_chars(name.data(), name.data() + name.size(), key);
    return key == combination_.key;
  }

  const SwayCombination& combination_;
  const HasSymbol& hasSymbol_;
  std::map<std::string, std::string, std::greater<>> variables_;  ///< longer names first
  std::vector<std::string> included_;                             ///< by the last line
  std::set<std::string> seen_;                                    ///< included files
  std::string directory_;                                         ///< of the file being read
  std::vector<std::vector<std::string>> blocks_;  ///< the first words of the blocks around a line
};

}  // namespace

std::string SwayCombination::text() const {
  std::string text;
  for (std::size_t i = 0; i < kCanonicalNames; ++i) {
    if ((modifiers & kModifierNames[i].modifier) != 0)
      text += kModifierNames[i].name + std::string("+");
  }
  return text + std::to_string(key);
}

std::optional<std::string> findBinding(const SwayConfiguration& configuration,
                                       const SwayCombination& combination,
                                       const HasSymbol& hasSymbol) {
  return Reader(combination, hasSymbol).read(configuration);
}

}  // namespace seldial::platform::wayland
