#include "ucclient/Numbers.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iterator>

namespace seldial {
namespace {

constexpr char32_t kInvalid = 0xFFFD;

struct Range {
  char32_t first;
  char32_t last;
};

template <std::size_t Count>
bool isIn(const Range (&ranges)[Count], char32_t character) {
  return std::any_of(std::begin(ranges), std::end(ranges), [character](const Range& range) {
    return character >= range.first && character <= range.last;
  });
}

/// The zero digits of all scripts; the other nine digits follow each of them (general category Nd).
constexpr char32_t kZeros[] = {
    0x0660,  0x06F0,  0x07C0,  0x0966,  0x09E6,  0x0A66,  0x0AE6,  0x0B66,  0x0BE6,
    0x0C66,  0x0CE6,  0x0D66,  0x0DE6,  0x0E50,  0x0ED0,  0x0F20,  0x1040,  0x1090,
    0x17E0,  0x1810,  0x1946,  0x19D0,  0x1A80,  0x1A90,  0x1B50,  0x1BB0,  0x1C40,
    0x1C50,  0xA620,  0xA8D0,  0xA900,  0xA9D0,  0xA9F0,  0xAA50,  0xABF0,  0xFF10,
    0x104A0, 0x11066, 0x110F0, 0x11136, 0x1D7CE, 0x1D7D8, 0x1D7E2, 0x1D7EC, 0x1D7F6};

constexpr Range kBlanks[] = {{0x20, 0x20},     {0xA0, 0xA0},     {0x1680, 0x1680},
                             {0x2000, 0x200A}, {0x202F, 0x202F}, {0x205F, 0x205F},
                             {0x2800, 0x2800}, {0x3000, 0x3000}};

constexpr Range kLineBreaks[] = {{0x09, 0x0D}, {0x85, 0x85}, {0x2028, 0x2029}};

/// Includes U+30FC, the Japanese prolonged sound mark, which is often typed as a hyphen between
/// digits.
constexpr Range kHyphens[] = {
    {0x2D, 0x2D},     {0x058A, 0x058A}, {0x05BE, 0x05BE}, {0x1806, 0x1806}, {0x02D7, 0x02D7},
    {0x2010, 0x2015}, {0x2043, 0x2043}, {0x2212, 0x2212}, {0x2796, 0x2796}, {0x2E3A, 0x2E3B},
    {0x301C, 0x301C}, {0x3030, 0x3030}, {0x30A0, 0x30A0}, {0x30FC, 0x30FC}, {0xFE31, 0xFE32},
    {0xFE58, 0xFE58}, {0xFE63, 0xFE63}, {0xFF0D, 0xFF0D}, {0xFF70, 0xFF70}};

constexpr Range kDots[] = {{0xB7, 0xB7},     {0x2022, 0x2022}, {0x2024, 0x2024}, {0x2027, 0x2027},
                           {0x2219, 0x2219}, {0x22C5, 0x22C5}, {0x30FB, 0x30FB}, {0xFF65, 0xFF65}};

constexpr Range kPlusSigns[] = {{0x207A, 0x207A}, {0x2795, 0x2795}, {0xFE62, 0xFE62}};

constexpr Range kSlashes[] = {{0x2044, 0x2044}, {0x2215, 0x2215}};

constexpr Range kInvisible[] = {
    {0x00, 0x08},     {0x0E, 0x1F},     {0x7F, 0x84},     {0x86, 0x9F},     {0xAD, 0xAD},
    {0x034F, 0x034F}, {0x061C, 0x061C}, {0x180B, 0x180E}, {0x200B, 0x200F}, {0x202A, 0x202E},
    {0x2060, 0x206F}, {0x20E3, 0x20E3}, {0xFE00, 0xFE0F}, {0xFEFF, 0xFEFF}, {0xE0001, 0xE01EF}};

/// The next character of UTF-8 text; kInvalid for a byte that does not begin one. Advances `next`.
char32_t decodeNext(const std::string& text, std::size_t& next) {
  const auto lead = static_cast<unsigned char>(text[next++]);
  if (lead < 0x80) return lead;
  const int more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
  if (lead < 0xC2 || lead > 0xF4) return kInvalid;
  auto character = static_cast<char32_t>(lead & (0x3F >> more));
  for (int i = 0; i < more; ++i) {
    const auto byte = static_cast<unsigned char>(next < text.size() ? text[next] : 0);
    if ((byte & 0xC0) != 0x80) return kInvalid;
    character = character << 6 | (byte & 0x3FU);
    ++next;
  }
  return character;
}

void append(std::string& text, char32_t character) {
  const auto byte = [](char32_t bits) {
    return static_cast<char>(static_cast<unsigned char>(bits));
  };
  if (character < 0x80) {
    text += byte(character);
  } else if (character < 0x800) {
    text += {byte(0xC0 | character >> 6), byte(0x80 | (character & 0x3F))};
  } else if (character < 0x10000) {
    text += {byte(0xE0 | character >> 12), byte(0x80 | (character >> 6 & 0x3F)),
             byte(0x80 | (character & 0x3F))};
  } else {
    text += {byte(0xF0 | character >> 18), byte(0x80 | (character >> 12 & 0x3F)),
             byte(0x80 | (character >> 6 & 0x3F)), byte(0x80 | (character & 0x3F))};
  }
}

/// The replacement of the character in normalised text.
char32_t normalised(char32_t character) {
  if (isIn(kLineBreaks, character)) return '\n';
  if (isIn(kBlanks, character)) return ' ';
  if (isIn(kHyphens, character)) return '-';
  if (isIn(kDots, character)) return '.';
  if (isIn(kPlusSigns, character)) return '+';
  if (isIn(kSlashes, character)) return '/';
  const auto* const zero = std::find_if(
      std::begin(kZeros), std::end(kZeros),
      [character](char32_t first) { return character >= first && character < first + 10; });
  if (zero != std::end(kZeros)) return '0' + (character - *zero);
  if (character >= 0xFF01 && character <= 0xFF5E) return character - 0xFF01 + '!';
  return character;
}

}  // namespace

std::string normalisedText(const std::string& text) {
  std::string result;
  for (std::size_t next = 0; next < text.size();) {
    const bool isLineFeedAfterReturn = next > 0 && text[next] == '\n' && text[next - 1] == '\r';
    const char32_t character = decodeNext(text, next);
    if (!isLineFeedAfterReturn && !isIn(kInvisible, character))
      append(result, normalised(character));
  }
  return result;
}

std::string dialableCharacters(const std::string& text) {
  std::string result;
  for (const char letter : text) {
    const bool digit = letter >= '0' && letter <= '9';
    const bool isLeadingPlus = letter == '+' && result.empty();
    if (digit || letter == '*' || letter == '#' || isLeadingPlus) result += letter;
  }
  return result;
}

std::string regionOfLocale() {
  for (const char* const name : {"LC_ALL", "LC_TELEPHONE", "LANG"}) {
    const char* const value = std::getenv(name);
    if (value == nullptr || value[0] == '\0') continue;
    const std::string locale = value;  // language_REGION.encoding@variant
    const auto underscore = locale.find('_');
    if (underscore == std::string::npos) return "";
    const std::string region =
        locale.substr(underscore + 1, locale.find_first_of(".@", underscore) - underscore - 1);
    return isKnownRegion(region) ? region : "";
  }
  return "";
}

}  // namespace seldial
