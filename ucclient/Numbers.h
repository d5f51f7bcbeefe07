// Finding telephone numbers in selected text.
#pragma once

#include <string>
#include <vector>

namespace seldial {

/// One number, in the forms in which it can be dialled.
struct FoundNumber {
  std::string international;  ///< "+31201234567"; empty if only the written form is known
  std::string national;       ///< as dialled within its country, "0201234567"; may be empty
  std::string outgoing;       ///< digits to dial from the region, "004930123456"; may be empty
  std::string extension;      ///< digits, empty without one
  std::string written;        ///< as selected, reduced to "+", "*", "#" and digits

  [[nodiscard]] bool operator==(const FoundNumber& other) const = default;
};

/// The numbers in a selection.
struct FoundNumbers {
  std::vector<FoundNumber> numbers;  ///< in the order of the text, each once
  /// False if the text is ambiguous; then the user must confirm the number.
  bool certain = true;
};

/// The maximum length of a selection that is searched, in bytes.
constexpr std::size_t kMaxSelectionLength = 100000;

/// Finds the numbers in a selection. `region` is the country of numbers without a country code, as
/// in ISO 3166 ("NL"). If it is empty, only international numbers are found. `selection` may be any
/// bytes.
[[nodiscard]] FoundNumbers findNumbers(const std::string& selection, const std::string& region);

/// Whether findNumbers() knows the region's numbers.
[[nodiscard]] bool isKnownRegion(const std::string& region);

/// The region of the locale, from the first of LC_ALL, LC_TELEPHONE and LANG that is set; empty if
/// the locale has none, such as "C".
[[nodiscard]] std::string regionOfLocale();

/// The digits, "*" and "#" of the text, and a leading "+".
[[nodiscard]] std::string dialableCharacters(const std::string& text);

/// Normalises selected text to the characters in which telephone numbers are usually typed: every
/// Unicode decimal digit becomes 0 to 9, every space a plain space, every hyphen, dash and minus
/// sign "-", every dot ".", every plus sign "+", fullwidth characters ASCII, and every line break,
/// and the tab that separates columns, a line feed. Invisible characters, such as soft hyphens and
/// direction marks, are removed. All other characters are kept. Bytes that are not UTF-8 become
/// U+FFFD.
[[nodiscard]] std::string normalisedText(const std::string& text);

}  // namespace seldial
