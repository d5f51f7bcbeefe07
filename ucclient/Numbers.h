// Finding telephone numbers in selected text.
#pragma once

#include <string>
#include <vector>

namespace seldial {

/// One number, as it can be dialled.
struct FoundNumber {
  std::string international;  ///< "+31201234567"; empty when only the written form is known
  std::string national;       ///< as dialled inside its own country, "0201234567"; may be empty
  std::string outgoing;       ///< digits to dial from the region, "004930123456"; may be empty
  std::string extension;      ///< digits, empty without one
  std::string written;        ///< the digits as selected: "+", "*", "#" and digits alone

  [[nodiscard]] bool operator==(const FoundNumber& other) const = default;
};

/// What a selection holds.
struct FoundNumbers {
  std::vector<FoundNumber> numbers;  ///< in the order of the text, each once
  /// False when there may be another way to read the text: then a person must confirm the number.
  bool certain = true;
};

/// Longer selections hold no number, in bytes.
constexpr std::size_t kLongestSelection = 100000;

/// Finds the numbers in a selection. `region` is the country whose national numbers are meant, as
/// in ISO 3166 ("NL"); empty: only international numbers are found. Any text is safe.
[[nodiscard]] FoundNumbers findNumbers(const std::string& selection, const std::string& region);

/// Whether findNumbers() knows the region's numbers.
[[nodiscard]] bool isKnownRegion(const std::string& region);

/// The region of the locale, from LC_ALL, LC_TELEPHONE or LANG, the first one that is set; empty
/// when it names none, as "C" does.
[[nodiscard]] std::string regionOfLocale();

/// The text's digits, "*" and "#", and a "+" in front.
[[nodiscard]] std::string dialledCharacters(const std::string& text);

/// Selected text in the characters in which telephone numbers are usually typed: every decimal
/// digit of Unicode as 0 to 9, every blank as one space, every hyphen, dash and minus sign as "-",
/// every dot as ".", every plus sign as "+", fullwidth characters as ASCII, and every kind of line
/// break, and the tab that separates columns, as a line feed. Invisible characters, such as soft
/// hyphens and direction marks, are removed. All others are kept. Bytes that are not UTF-8 become
/// U+FFFD.
[[nodiscard]] std::string cleanedText(const std::string& text);

}  // namespace seldial
