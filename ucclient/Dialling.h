// How a number becomes a call: the formats in which it is dialled, and the programs that dial it.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "ucclient/Numbers.h"

namespace seldial {

enum class NumberFormat { kE164, kNational, kRaw };

/// When the user is asked first. kUndo: like kSeveral, and every other call can be undone before it
/// begins.
enum class Confirm { kAlways, kUndo, kSeveral, kNever };

/// What is done with a selection.
struct DialSettings {
  std::vector<std::string> command;  ///< words with placeholders; empty: no command is run
  std::string scheme;                ///< of the URI that the desktop opens; empty: none
  std::string region;                ///< as findNumbers() takes it
  NumberFormat format = NumberFormat::kE164;
  std::string prefix;  ///< dialled before the number, for an outside line
  Confirm confirm = Confirm::kSeveral;
  std::chrono::seconds undoTime{2};  ///< how long a call can be undone before it begins

  [[nodiscard]] bool dials() const { return !command.empty() || !scheme.empty(); }
};

/// The number as it is dialled: digits, "*", "#" and a "+" in front. Empty when the settings leave
/// no way to dial it.
[[nodiscard]] std::string dialledNumber(const FoundNumber& number, const DialSettings& settings);

/// The number as a URI of that scheme ("tel", "sip", "callto"), with the extension in a "tel" URI.
[[nodiscard]] std::string dialledURI(const std::string& scheme, const FoundNumber& number,
                                     const DialSettings& settings);

/// The program to run and its arguments. "{}" stands for the number as dialled, "{tel}" for its
/// "tel" URI and "{text}" for the selection. Nothing when that is not safe or not possible; `error`
/// then says why, without a full stop and without the number.
[[nodiscard]] std::optional<std::vector<std::string>> dialArguments(const FoundNumber& number,
                                                                    const std::string& selection,
                                                                    const DialSettings& settings,
                                                                    std::string& error);

}  // namespace seldial
