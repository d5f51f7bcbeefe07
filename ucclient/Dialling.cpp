#include "ucclient/Dialling.h"

#include <array>

#include "client/Options.h"
#include "platform/System.h"

namespace seldial {
namespace {

/// Puts the values in place of the placeholders, from left to right: what is put in is not
/// searched.
std::string filledIn(const std::string& word, const std::array<std::string, 3>& values) {
  std::string result;
  for (std::size_t at = 0; at < word.size();) {
    std::size_t which = 0;
    while (which < values.size() && word.compare(at, std::string(kDialPlaceholders[which]).size(),
                                                 kDialPlaceholders[which]) != 0) {
      ++which;
    }
    if (which == values.size()) {
      result += word[at++];
    } else {
      result += values[which];
      at += std::string(kDialPlaceholders[which]).size();
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
