#include "ucclient/Dialling.h"

#include <algorithm>
#include <array>

#include "platform/System.h"

namespace seldial {
namespace {

constexpr std::array kPlaceholders{"{}", "{tel}", "{text}"};

bool hasPlaceholder(const std::string& word) {
  return std::any_of(kPlaceholders.begin(), kPlaceholders.end(), [&word](const char* placeholder) {
    return word.find(placeholder) != std::string::npos;
  });
}

/// Splits text into words; see dialCommandFrom().
class WordSplitter {
 public:
  explicit WordSplitter(const std::string& text) : text_(text) {}

  /// False when a quote is not closed, or nothing follows the last backslash.
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
  bool inWord_ = false;  // also of an empty word in quotes
  std::string word_;
  std::vector<std::string> words_;
};

/// Puts the values in place of the placeholders, from left to right: what is put in is not
/// searched.
std::string filledIn(const std::string& word, const std::array<std::string, 3>& values) {
  std::string result;
  for (std::size_t at = 0; at < word.size();) {
    std::size_t which = 0;
    while (which < values.size() &&
           word.compare(at, std::string(kPlaceholders[which]).size(), kPlaceholders[which]) != 0) {
      ++which;
    }
    if (which == values.size()) {
      result += word[at++];
    } else {
      result += values[which];
      at += std::string(kPlaceholders[which]).size();
    }
  }
  return result;
}

std::string escapedForURI(std::string number) {
  for (auto at = number.find('#'); at != std::string::npos; at = number.find('#', at)) {
    number.replace(at, 1, "%23");
  }
  return number;
}

}  // namespace

std::optional<std::vector<std::string>> dialCommandFrom(const std::string& text,
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

std::string dialledNumber(const FoundNumber& number, const DialSettings& settings) {
  const bool onlyWritten = number.international.empty();
  if (settings.format == NumberFormat::kRaw || onlyWritten) {
    const bool cannotFollow = !settings.prefix.empty() && number.written.starts_with('+');
    return cannotFollow ? "" : settings.prefix + number.written;
  }
  if (!settings.prefix.empty()) {
    return number.outgoing.empty() ? "" : settings.prefix + number.outgoing;
  }
  const bool national = settings.format == NumberFormat::kNational && !number.national.empty();
  return national ? number.national : number.international;
}

std::string dialledURI(const std::string& scheme, const FoundNumber& number,
                       const DialSettings& settings) {
  const std::string dialled = dialledNumber(number, settings);
  if (dialled.empty()) return "";
  const bool withExtension = scheme == "tel" && !number.extension.empty();
  return scheme + ":" + escapedForURI(dialled) + (withExtension ? ";ext=" + number.extension : "");
}

std::optional<std::vector<std::string>> dialArguments(const FoundNumber& number,
                                                      const std::string& selection,
                                                      const DialSettings& settings,
                                                      std::string& error) {
  const std::string dialled = dialledNumber(number, settings);
  if (dialled.empty()) {
    error = "the number cannot be dialled after a prefix";
    return std::nullopt;
  }
  if (!settings.scheme.empty()) {
    return std::vector<std::string>{platform::uriOpener(),
                                    dialledURI(settings.scheme, number, settings)};
  }
  const std::array<std::string, 3> values{dialled, dialledURI("tel", number, settings), selection};
  std::vector<std::string> arguments;
  for (const std::string& word : settings.command) {
    arguments.push_back(filledIn(word, values));
    if (arguments.back().find('\0') != std::string::npos) {
      error = "the selection has a zero byte, which no argument can have";
      return std::nullopt;
    }
    if (!word.starts_with('-') && arguments.back().starts_with('-')) {
      error = "the selection begins with a hyphen, so the program could take it for an option";
      return std::nullopt;
    }
  }
  return arguments;
}

}  // namespace seldial
