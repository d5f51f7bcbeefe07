// Finding numbers with libphonenumber.
//
// The library finds numbers in one line of usual characters. Two things are added: the text is
// cleaned first, because the library takes an unusual blank or hyphen for the end of a number; and
// whatever could be read in another way is reported as uncertain: a number with more digits next to
// it, a number that may go on in the next line, and digits that the numbering plan does not know.
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

/// How many candidates of one line are looked at.
constexpr int kMostTries = 1000;
/// Digits that the numbering plan does not know are offered as a number if there are at least
/// kFewestOfUnknown, or between kFewestOfShort and kMostOfShort: an internal extension or an
/// emergency number.
constexpr std::size_t kFewestOfUnknown = 7;
constexpr std::size_t kFewestOfShort = 2;
constexpr std::size_t kMostOfShort = 6;

/// How far from a number other digits may stand to be a part of it, in bytes.
constexpr std::size_t kReach = 8;

constexpr const char* kNumberCharacters = "+0123456789 -./()[]~";

const PhoneNumberUtil& util() {
  return *PhoneNumberUtil::GetInstance();
}

/// A number and its place in the text.
struct Match {
  std::size_t begin;
  std::size_t end;
  FoundNumber number;
  bool certain;  ///< as far as its own characters tell
};

bool isDigit(char letter) {
  return letter >= '0' && letter <= '9';
}

bool isDate(const std::string& text) {
  static const std::regex date(
      R"((\d{4}([-./ ])\d{1,2}\2\d{1,2}|\d{1,2}([-./ ])\d{1,2}\3(\d{4}|\d{2})))");
  return std::regex_match(text, date);
}

/// Such as "192.168.1.100".
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
  return dialledCharacters(number);
}

FoundNumber foundNumber(const PhoneNumber& number, const std::string& text,
                        const std::string& region) {
  FoundNumber found;
  found.international = formatted(number, PhoneNumberUtil::E164);
  found.extension = number.extension();
  found.written = writtenDigits(text);
  if (region.empty()) return found;
  if (number.country_code() == util().GetCountryCodeForRegion(region)) {
    found.national = dialledCharacters(formatted(number, PhoneNumberUtil::NATIONAL));
  }
  PhoneNumber withoutExtension = number;
  withoutExtension.clear_extension();
  std::string outgoing;
  util().FormatOutOfCountryCallingNumber(withoutExtension, region, &outgoing);
  found.outgoing = dialledCharacters(outgoing);
  if (found.outgoing.starts_with('+')) found.outgoing.clear();  // no prefix for calls abroad known
  return found;
}

/// Whether the characters of a match leave no doubt. "030 1234-0/-17" is two numbers, "1234  5678"
/// may be two columns, and what follows "#" or "~" may be no extension.
bool isCertain(const std::string& text, const std::string& extension) {
  static const std::regex doubtful(R"(  |--|/ *-|- */|/ *\d{1,3}$)");
  static const std::regex label("[^-+0-9 ./()*#~]");
  return !std::regex_search(text, doubtful) &&
         (extension.empty() || std::regex_search(text, label));
}

std::vector<Match> matchesInLine(const std::string& line, std::size_t offset,
                                 const std::string& region, PhoneNumberMatcher::Leniency leniency) {
  std::vector<Match> matches;
  PhoneNumberMatcher matcher(util(), line, region.empty() ? "ZZ" : region, leniency, kMostTries);
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

/// Neither a letter nor a digit of ASCII, nor a line break.
bool isMark(char letter) {
  const bool isLetter = (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z');
  return !isLetter && !isDigit(letter) && letter != '\n';
}

/// Whether the first letter or digit from `at` on, going by `step`, is a digit of no match.
bool hasDigitNear(const std::string& text, const std::vector<Match>& matches, std::size_t at,
                  std::size_t step) {
  for (std::size_t i = 0; i < kReach && at < text.size(); ++i, at += step) {
    if (!isMark(text[at])) return isDigit(text[at]) && !isInMatch(matches, at);
  }
  return false;
}

/// Whether other digits follow or precede a match with nothing but marks in between.
bool hasDigitsBeside(const std::string& text, const std::vector<Match>& matches) {
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

/// The text with those line breaks replaced by blanks that may lie within a number: between number
/// characters, unless both of the lines end and begin with a number of their own.
std::string withBrokenNumbersJoined(std::string text, const std::vector<Match>& matches) {
  const std::string inNumber = kNumberCharacters;
  for (auto at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 1)) {
    const auto before = at == 0 ? std::string::npos : text.find_last_not_of(" \n", at - 1);
    const auto after = text.find_first_not_of(" \n", at);
    if (before == std::string::npos || after == std::string::npos) continue;
    if (inNumber.find(text[before]) == std::string::npos) continue;
    if (inNumber.find(text[after]) == std::string::npos) continue;
    const bool twoNumbers = isInMatch(matches, before) && isInMatch(matches, after);
    if (!twoNumbers) text[at] = ' ';
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

/// What was found in a text.
FoundNumbers numbersOf(const std::string& text, const std::vector<Match>& matches) {
  FoundNumbers found;
  addNumbers(found.numbers, matches);
  const bool eachCertain =
      std::all_of(matches.begin(), matches.end(), [](const Match& match) { return match.certain; });
  found.certain = eachCertain && !hasDigitsBeside(text, matches) && !isInAddress(text, matches);
  return found;
}

/// What may be a number although no numbering plan has it: only a person can tell.
FoundNumbers unknownNumbers(const std::string& text, const std::string& region) {
  FoundNumbers found{{}, false};
  const auto digits = static_cast<std::size_t>(std::count_if(text.begin(), text.end(), isDigit));
  const auto first = text.find_first_not_of(" \n");
  const auto last = text.find_last_not_of(" \n");
  if (first == std::string::npos) return found;
  const std::string trimmed = text.substr(first, last - first + 1);
  const bool isShort = trimmed.find_first_not_of("0123456789*#") == std::string::npos;
  if (isShort && digits >= kFewestOfShort && digits <= kMostOfShort) {
    FoundNumber number;
    number.written = trimmed;
    found.numbers.push_back(number);
    return found;
  }
  // Anything else in the text makes it more likely that the digits are no number.
  if (trimmed.find_first_not_of(kNumberCharacters) != std::string::npos) return found;
  if (digits < kFewestOfUnknown || isAddressOfHost(trimmed)) return found;
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
  if (selection.size() > kLongestSelection) return {};
  const std::string text = cleanedText(selection);
  const auto byLines = matchesIn(text, region);
  const std::string joined = withBrokenNumbersJoined(text, byLines);
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
