// Finding numbers with libphonenumber.
//
// The library finds numbers in one line of usual characters. We add two things. The text is cleaned
// first, because an unusual space or hyphen ends a number for the library. And ambiguous text is
// reported as uncertain: a number with more digits next to it, a number that may continue on the
// next line, and digits that are not in the numbering plan.
#include <phonenumbers/phonenumber.pb.h>
#include <phonenumbers/phonenumbermatch.h>
#include <phonenumbers/phonenumbermatcher.h>
#include <phonenumbers/phonenumberutil.h>

#include <algorithm>
#include <regex>
#include <set>

#include "ucclient/Numbers.h"

namespace seldial {
namespace {

using i18n::phonenumbers::PhoneNumber;
using i18n::phonenumbers::PhoneNumberMatch;
using i18n::phonenumbers::PhoneNumberMatcher;
using i18n::phonenumbers::PhoneNumberUtil;

/// The maximum number of candidates examined in one line.
constexpr int kMaxTries = 1000;
/// Digits that are not in the numbering plan are offered as a number if there are at least
/// kMinUnknownDigits, or between kMinShortDigits and kMaxShortDigits: an internal extension or an
/// emergency number.
constexpr std::size_t kMinUnknownDigits = 7;
constexpr std::size_t kMinShortDigits = 2;
constexpr std::size_t kMaxShortDigits = 6;

/// The maximum distance from a number at which other digits may be part of it, in bytes.
constexpr std::size_t kContextLength = 8;

constexpr const char* kNumberCharacters = "+0123456789 -./()[]~";

const PhoneNumberUtil& util() {
  return *PhoneNumberUtil::GetInstance();
}

/// A number and its position in the text.
struct Match {
  std::size_t begin;
  std::size_t end;
  FoundNumber number;
  bool certain;  ///< judged by its own characters only
};

bool isDigit(char letter) {
  return letter >= '0' && letter <= '9';
}

bool isDate(const std::string& text) {
  static const std::regex date(
      R"((\d{4}([-./ ])\d{1,2}\2\d{1,2}|\d{1,2}([-./ ])\d{1,2}\3(\d{4}|\d{2})))");
  return std::regex_match(text, date);
}

/// Whether the text is a host address such as "192.168.1.100".
bool isAddressOfHost(const std::string& text) {
  static const std::regex address(R"(\d{1,3}(\.\d{1,3}){3})");
  return std::regex_match(text, address);
}

std::string formatted(PhoneNumber number, PhoneNumberUtil::PhoneNumberFormat format) {
  number.clear_extension();
  std::string text;
  util().Format(number, format, &text);
  return text;
}

/// The digits as selected: without an extension, and without a zero in brackets that is not dialled
/// after a country code.
std::string writtenDigits(const std::string& text) {
  std::string number = text.substr(0, text.find_first_not_of(kNumberCharacters));
  const auto zero = number.find("(0)");
  if (number.front() == '+' && zero != std::string::npos) number.erase(zero, 3);
  return dialableCharacters(number);
}

FoundNumber foundNumber(const PhoneNumber& number, const std::string& text,
                        const std::string& region) {
  FoundNumber found;
  found.international = formatted(number, PhoneNumberUtil::E164);
  found.extension = number.extension();
  found.written = writtenDigits(text);
  if (region.empty()) return found;
  if (number.country_code() == util().GetCountryCodeForRegion(region)) {
    found.national = dialableCharacters(formatted(number, PhoneNumberUtil::NATIONAL));
  }
  PhoneNumber withoutExtension = number;
  withoutExtension.clear_extension();
  std::string outgoing;
  util().FormatOutOfCountryCallingNumber(withoutExtension, region, &outgoing);
  found.outgoing = dialableCharacters(outgoing);
  if (found.outgoing.starts_with('+')) found.outgoing.clear();  // no international prefix is known
  return found;
}

/// Whether the characters of a match are unambiguous. "030 1234-0/-17" is two numbers, "1234 5678"
/// may be two columns, and the text after "#" or "~" may not be an extension.
bool isCertain(const std::string& text, const std::string& extension) {
  static const std::regex ambiguous(R"(  |--|/ *-|- */|/ *\d{1,3}$)");
  static const std::regex label("[^-+0-9 ./()*#~]");
  return !std::regex_search(text, ambiguous) &&
         (extension.empty() || std::regex_search(text, label));
}

std::vector<Match> matchesInLine(const std::string& line, std::size_t offset,
                                 const std::string& region, PhoneNumberMatcher::Leniency leniency) {
  std::vector<Match> matches;
  PhoneNumberMatcher matcher(util(), line, region.empty() ? "ZZ" : region, leniency, kMaxTries);
  PhoneNumberMatch match;
  while (matcher.HasNext() && matcher.Next(&match)) {
    if (isDate(match.raw_string())) continue;
    matches.push_back({offset + static_cast<std::size_t>(match.start()),
                       offset + static_cast<std::size_t>(match.end()),
                       foundNumber(match.number(), match.raw_string(), region),
                       isCertain(match.raw_string(), match.number().extension())});
  }
  return matches;
}

std::vector<Match> matchesIn(const std::string& text, const std::string& region,
                             PhoneNumberMatcher::Leniency leniency = PhoneNumberMatcher::VALID) {
  std::vector<Match> matches;
  for (std::size_t begin = 0; begin < text.size();) {
    const auto end = std::min(text.find('\n', begin), text.size());
    auto found = matchesInLine(text.substr(begin, end - begin), begin, region, leniency);
    matches.insert(matches.end(), found.begin(), found.end());
    begin = end + 1;
  }
  return matches;
}

bool isInMatch(const std::vector<Match>& matches, std::size_t place) {
  return std::any_of(matches.begin(), matches.end(), [place](const Match& match) {
    return place >= match.begin && place < match.end;
  });
}

/// Whether it is neither an ASCII letter or digit nor a line break.
bool isMark(char letter) {
  const bool isLetter = (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z');
  return !isLetter && !isDigit(letter) && letter != '\n';
}

/// Whether the first letter or digit from `at` on, in the direction of `step`, is a digit outside
/// all matches.
bool hasDigitNear(const std::string& text, const std::vector<Match>& matches, std::size_t at,
                  std::size_t step) {
  for (std::size_t i = 0; i < kContextLength && at < text.size(); ++i, at += step) {
    if (!isMark(text[at])) return isDigit(text[at]) && !isInMatch(matches, at);
  }
  return false;
}

/// Whether other digits follow or precede a match with only marks in between.
bool hasAdjacentDigits(const std::string& text, const std::vector<Match>& matches) {
  constexpr auto kBackwards = static_cast<std::size_t>(-1);  // also from 0, to beyond the text
  return std::any_of(matches.begin(), matches.end(), [&](const Match& match) {
    return hasDigitNear(text, matches, match.end, 1) ||
           hasDigitNear(text, matches, match.begin + kBackwards, kBackwards);
  });
}

/// Whether a match looks like a part of a web or e-mail address.
bool isInAddress(const std::string& text, const std::vector<Match>& matches) {
  const std::string marks = "/=&?@%_";
  return std::any_of(matches.begin(), matches.end(), [&](const Match& match) {
    const bool before = match.begin > 0 && marks.find(text[match.begin - 1]) != std::string::npos;
    return before || (match.end < text.size() && marks.find(text[match.end]) != std::string::npos);
  });
}

/// Replaces the line breaks that may be within a number by spaces: those between number characters,
/// unless the first line ends and the next line begins with a complete number.
std::string joinBrokenNumbers(std::string text, const std::vector<Match>& matches) {
  const std::string inNumber = kNumberCharacters;
  for (auto at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 1)) {
    const auto before = at == 0 ? std::string::npos : text.find_last_not_of(" \n", at - 1);
    const auto after = text.find_first_not_of(" \n", at);
    if (before == std::string::npos || after == std::string::npos) continue;
    if (inNumber.find(text[before]) == std::string::npos) continue;
    if (inNumber.find(text[after]) == std::string::npos) continue;
    const bool isBetweenNumbers = isInMatch(matches, before) && isInMatch(matches, after);
    if (!isBetweenNumbers) text[at] = ' ';
  }
  return text;
}

void addNumbers(std::vector<FoundNumber>& numbers, const std::vector<Match>& matches) {
  for (const Match& match : matches) {
    const bool known = std::any_of(numbers.begin(), numbers.end(), [&match](const auto& number) {
      return number.international == match.number.international &&
             number.extension == match.number.extension;
    });
    if (!known) numbers.push_back(match.number);
  }
}

/// The numbers that were found in a text.
FoundNumbers numbersOf(const std::string& text, const std::vector<Match>& matches) {
  FoundNumbers found;
  addNumbers(found.numbers, matches);
  const bool allCertain =
      std::all_of(matches.begin(), matches.end(), [](const Match& match) { return match.certain; });
  found.certain = allCertain && !hasAdjacentDigits(text, matches) && !isInAddress(text, matches);
  return found;
}

/// Text that may be a number although it is not in the numbering plan: only the user can tell.
FoundNumbers unknownNumbers(const std::string& text, const std::string& region) {
  FoundNumbers found{{}, false};
  const auto digits = static_cast<std::size_t>(std::count_if(text.begin(), text.end(), isDigit));
  const auto first = text.find_first_not_of(" \n");
  const auto last = text.find_last_not_of(" \n");
  if (first == std::string::npos) return found;
  const std::string trimmed = text.substr(first, last - first + 1);
  const bool isShort = trimmed.find_first_not_of("0123456789*#") == std::string::npos;
  if (isShort && digits >= kMinShortDigits && digits <= kMaxShortDigits) {
    FoundNumber number;
    number.written = trimmed;
    found.numbers.push_back(number);
    return found;
  }
  // If there is other text, the digits are less likely to be a number.
  if (trimmed.find_first_not_of(kNumberCharacters) != std::string::npos) return found;
  if (digits < kMinUnknownDigits || isAddressOfHost(trimmed)) return found;
  const auto matches = matchesIn(text, region, PhoneNumberMatcher::POSSIBLE);
  if (matches.size() == 1) addNumbers(found.numbers, matches);
  return found;
}

}  // namespace

bool isKnownRegion(const std::string& region) {
  std::set<std::string> regions;
  util().GetSupportedRegions(&regions);
  return regions.count(region) != 0;
}

FoundNumbers findNumbers(const std::string& selection, const std::string& region) {
  if (selection.size() > kMaxSelectionLength) return {};
  const std::string text = normalisedText(selection);
  const auto byLines = matchesIn(text, region);
  const std::string joined = joinBrokenNumbers(text, byLines);
  FoundNumbers found = numbersOf(text, byLines);
  if (joined != text) {
    const auto inJoined = matchesIn(joined, region);
    const FoundNumbers other = numbersOf(joined, inJoined);
    const bool same = byLines.empty() || (found.certain && found.numbers == other.numbers);
    found.certain = same && other.certain;
    addNumbers(found.numbers, inJoined);
  }
  return found.numbers.empty() ? unknownNumbers(joined, region) : found;
}

}  // namespace seldial
