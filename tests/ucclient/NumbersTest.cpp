// Finding numbers in selections: every line of Selections.txt, and robustness against any text.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "ucclient/Numbers.h"

namespace seldial {
namespace {

/// The character as UTF-8.
std::string encoded(unsigned long character) {
  const auto byte = [](unsigned long bits) { return static_cast<char>(bits); };
  if (character < 0x80) return {byte(character)};
  if (character < 0x800) return {byte(0xC0 | character >> 6), byte(0x80 | (character & 0x3F))};
  return {byte(0xE0 | character >> 12), byte(0x80 | (character >> 6 & 0x3F)),
          byte(0x80 | (character & 0x3F))};
}

/// Replaces "\n" and "\u{202F}" by the characters that they represent.
std::string unescaped(std::string text) {
  for (auto at = text.find("\\n"); at != std::string::npos; at = text.find("\\n", at)) {
    text.replace(at, 2, "\n");
  }
  for (auto at = text.find("\\u{"); at != std::string::npos; at = text.find("\\u{", at)) {
    const auto end = text.find('}', at);
    const auto character = std::strtoul(text.substr(at + 3, end - at - 3).c_str(), nullptr, 16);
    text.replace(at, end - at + 1, encoded(character));
  }
  return text;
}

/// "+31201234567;ext=5", "? " and several or an uncertain one, or "nothing".
std::string outcomeOf(const std::string& selection, const std::string& region) {
  const FoundNumbers found = findNumbers(selection, region);
  if (found.numbers.empty()) return "nothing";
  std::string outcome = found.certain && found.numbers.size() == 1 ? "" : "?";
  for (const FoundNumber& number : found.numbers) {
    if (!outcome.empty()) outcome += ' ';
    outcome += number.international.empty() ? number.written : number.international;
    if (!number.extension.empty()) outcome += ";ext=" + number.extension;
  }
  return outcome;
}

TEST(Numbers, EachSelectionHasItsOutcome) {
  std::ifstream table(SELDIAL_SELECTIONS);
  std::string line;
  int number = 0;
  int selections = 0;
  while (std::getline(table, line)) {
    ++number;
    if (line.empty() || line.front() == '#') continue;
    const auto first = line.find(" | ");
    const auto last = line.rfind(" | ");
    ASSERT_LT(first, last) << "line " << number;
    const std::string region = line.substr(0, first);
    const std::string selection = line.substr(first + 3, last - first - 3);
    EXPECT_EQ(outcomeOf(unescaped(selection), region == "--" ? "" : region), line.substr(last + 3))
        << "line " << number << ": " << line;
    ++selections;
  }
  EXPECT_GE(selections, 200);
}

TEST(Numbers, AnyTextIsSafe) {
  std::string bytes;
  for (int i = 0; i < 20000; ++i) bytes += static_cast<char>((i * 7919) >> 3);
  EXPECT_NO_THROW((void)findNumbers(bytes, "NL"));
  EXPECT_NO_THROW((void)findNumbers(std::string(20000, '1'), "NL"));
  EXPECT_NO_THROW((void)findNumbers(std::string(20000, '+'), "NL"));
  EXPECT_TRUE(findNumbers(std::string(kMaxSelectionLength + 1, ' ') + "+31201234567", "NL")
                  .numbers.empty());
}

TEST(Numbers, AKnownRegionIsTwoCapitals) {
  EXPECT_TRUE(isKnownRegion("NL"));
  EXPECT_FALSE(isKnownRegion("nl"));
  EXPECT_FALSE(isKnownRegion("XX"));
  EXPECT_FALSE(isKnownRegion(""));
}

TEST(Numbers, TheRegionIsTheOneOfTheLocale) {
  setenv("LANG", "de_DE.UTF-8", 1);
  unsetenv("LC_ALL");
  unsetenv("LC_TELEPHONE");
  EXPECT_EQ(regionOfLocale(), "DE");
  setenv("LC_TELEPHONE", "nl_NL@euro", 1);
  EXPECT_EQ(regionOfLocale(), "NL");
  setenv("LC_ALL", "C.UTF-8", 1);
  EXPECT_EQ(regionOfLocale(), "");
  setenv("LC_ALL", "en_XX", 1);
  EXPECT_EQ(regionOfLocale(), "");
  unsetenv("LC_ALL");
}

TEST(SelectedText, IsNormalised) {
  EXPECT_EQ(normalisedText("＋３１\u00A0٢٠‑१२३\u202F４５６７"), "+31 20-123 4567");
  EXPECT_EQ(normalisedText("a\u200Bb\u00AD\uFEFFc\x01"), "abc");
  EXPECT_EQ(normalisedText("1\r\n2\r3\u20284\v5\t6"), "1\n2\n3\n4\n5\n6");
  EXPECT_EQ(normalisedText("é電話 \U0001D7CE"), "é電話 0");
}

TEST(SelectedText, BytesThatAreNotUtf8AreReplaced) {
  EXPECT_EQ(normalisedText("1\xC3"), "1\uFFFD");
  EXPECT_EQ(normalisedText("\xFF\xE2\x80 1"), "\uFFFD\uFFFD 1");
}

}  // namespace
}  // namespace seldial
