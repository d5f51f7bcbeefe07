#include "client/Options.h"

#include <algorithm>
#include <cstdlib>

namespace seldial {
namespace {

bool hasPlaceholder(const std::string& word) {
  return std::any_of(
      kDialPlaceholders.begin(), kDialPlaceholders.end(),
      [&word](const char* placeholder) { return word.find(placeholder) != std::string::npos; });
}

/// Splits text into words; see parseDialCommand().
class WordSplitter {
 public:
  explicit WordSplitter(const std::string& text) : text_(text) {}

  /// False if a quote is not closed, or nothing follows the last backslash.
  bool split() {
    for (next_ = 0; next_ < text_.size(); ++next_) {
      const char letter = text_[next_];
      if (quote_ == '\0' && (letter == ' ' || letter == '\t' || letter == '\n')) {
        endWord();
      } else if (!add(letter)) {
        return false;
      }
    }
    endWord();
    return quote_ == '\0';
  }

  [[nodiscard]] const std::vector<std::string>& words() const { return words_; }

 private:
  bool add(char letter) {
    inWord_ = true;
    if (letter == quote_) {
      quote_ = '\0';
    } else if (quote_ == '\0' && (letter == '\'' || letter == '"')) {
      quote_ = letter;
    } else if (letter == '\\' && quote_ != '\'') {
      if (++next_ == text_.size()) return false;
      word_ += text_[next_];
    } else {
      word_ += letter;
    }
    return true;
  }

  void endWord() {
    if (inWord_) words_.push_back(word_);
    inWord_ = false;
    word_.clear();
  }

  const std::string& text_;
  std::size_t next_ = 0;
  char quote_ = '\0';
  bool inWord_ = false;  // also in an empty quoted word
  std::string word_;
  std::vector<std::string> words_;
};

}  // namespace

bool OptionReader::readAll() {
  while (next_ < arguments_.size()) {
    if (!readOption(arguments_[next_++])) return false;
  }
  return true;
}

bool OptionReader::fail(const std::string& error) {
  error_ = place_ + error;
  return false;
}

bool OptionReader::readOption(const std::string& argument) {
  const auto equals = argument.find('=');
  const std::string name = argument.substr(0, equals);
  if (!takesValue(name)) return setFlag(argument) || fail("unknown option " + argument);
  if (equals != std::string::npos) return setValue(name, argument.substr(equals + 1));
  if (next_ == arguments_.size()) return fail(name + " needs a value");
  return setValue(name, arguments_[next_++]);
}

std::optional<std::uint16_t> parseDelay(const std::string& text) {
  const bool digits = text.find_first_not_of("0123456789") == std::string::npos;
  if (text.empty() || text.size() > 5 || !digits) return std::nullopt;
  const long value = std::strtol(text.c_str(), nullptr, 10);
  if (value > UINT16_MAX) return std::nullopt;
  return static_cast<std::uint16_t>(value);
}

std::optional<std::vector<std::string>> parseDialCommand(const std::string& text,
                                                         std::string& error) {
  WordSplitter splitter(text);
  if (!splitter.split()) {
    error = "a quote is not closed, or nothing follows a backslash";
    return std::nullopt;
  }
  std::vector<std::string> words = splitter.words();
  if (words.empty() || words.front().empty()) {
    error = "there is no program";
    return std::nullopt;
  }
  if (hasPlaceholder(words.front())) {
    error = "the program cannot be a part of the selection";
    return std::nullopt;
  }
  if (std::none_of(words.begin(), words.end(), hasPlaceholder)) words.emplace_back("{}");
  return words;
}

std::string configurationHome() {
  const char* const directory = std::getenv("XDG_CONFIG_HOME");
  if (directory != nullptr && directory[0] == '/') return directory;
  const char* const home = std::getenv("HOME");
  return home != nullptr && home[0] == '/' ? std::string(home) + "/.config" : "";
}

std::string defaultConfigurationPath() {
  const std::string home = configurationHome();
  return home.empty() ? "" : home + "/seldial/seldial-uc.toml";
}

}  // namespace seldial
