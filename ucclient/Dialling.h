// How a number becomes a call: the formats in which it is dialled, and the programs that dial it.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ucclient/MainThread.h"
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

/// Dials the number of a selection: finds it, lets the user choose where that is needed, and runs
/// the program that calls. Main thread only.
class Dialler {
 public:
  /// What happens, on the main thread. No sentence contains a number or a part of the selection.
  struct Events {
    std::function<void(const std::string& number)> dialled;   ///< the program was started
    std::function<void(const std::string& sentence)> failed;  ///< the program ended with an error
    std::function<void(const std::string& sentence)> notDialled;  ///< and why, no full stop
  };

  Dialler(DialSettings settings, std::shared_ptr<MainThread> mainThread, Events events);
  ~Dialler();
  Dialler(const Dialler&) = delete;
  Dialler& operator=(const Dialler&) = delete;

  /// An earlier selection for which a choice is open, or that can still be undone, is given up.
  void dial(const std::string& selection);

 private:
  class Choice;

  void startUnlessUndone(const std::string& selection, const FoundNumber& number);
  void choose(const std::string& selection, std::vector<FoundNumber> numbers);
  void start(const std::string& selection, const FoundNumber& number);

  const DialSettings settings_;
  const std::shared_ptr<MainThread> mainThread_;
  const std::shared_ptr<const Events> events_;
  std::shared_ptr<Choice> choice_;
  std::shared_ptr<const char> pending_;  ///< exists while a call can be undone
};

}  // namespace seldial
