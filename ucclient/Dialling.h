// Dialling a number: the formats in which it is dialled, and the programs that dial it.
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

/// When to ask the user before a call. kUndo: like kSeveral, and every other call can be undone
/// before it begins.
enum class Confirm { kAlways, kUndo, kSeveral, kNever };

/// The settings for dialling.
struct DialSettings {
  std::vector<std::string> command;  ///< words with placeholders; empty if there is no command
  std::string scheme;                ///< of the URI that the desktop opens; empty if none
  std::string region;                ///< see findNumbers()
  NumberFormat format = NumberFormat::kE164;
  std::string prefix;  ///< dialled before the number, for an outside line
  Confirm confirm = Confirm::kSeveral;
  std::chrono::seconds undoTime{2};  ///< how long a call can be undone before it begins

  [[nodiscard]] bool dials() const { return !command.empty() || !scheme.empty(); }
};

/// The number as it is dialled: digits, "*", "#" and a leading "+". Empty if it cannot be dialled
/// with these settings.
[[nodiscard]] std::string dialledNumber(const FoundNumber& number, const DialSettings& settings);

/// The number as a URI of that scheme ("tel", "sip", "callto"). A "tel" URI includes the extension.
[[nodiscard]] std::string dialledURI(const std::string& scheme, const FoundNumber& number,
                                     const DialSettings& settings);

/// The program to run and its arguments, with "{}" replaced by the number as dialled, "{tel}" by
/// its "tel" URI and "{text}" by the selection. Nothing if that is unsafe or impossible; `error`
/// then says why, without a full stop and without the number.
[[nodiscard]] std::optional<std::vector<std::string>> dialArguments(const FoundNumber& number,
                                                                    const std::string& selection,
                                                                    const DialSettings& settings,
                                                                    std::string& error);

/// Dials the number in a selection: finds it, lets the user choose if necessary, and runs the
/// program that calls. Main thread only.
class Dialler {
 public:
  /// Called on the main thread. No sentence contains a number or a part of the selection.
  struct Events {
    std::function<void(const std::string& number)> dialled;   ///< the program was started
    std::function<void(const std::string& sentence)> failed;  ///< the program ended with an error
    std::function<void(const std::string& sentence)> notDialled;  ///< the reason, no full stop
  };

  Dialler(DialSettings settings, std::shared_ptr<MainThread> mainThread, Events events);
  ~Dialler();
  Dialler(const Dialler&) = delete;
  Dialler& operator=(const Dialler&) = delete;

  /// Dials the number in `selection`. Cancels an earlier selection whose choice is still open or
  /// whose call can still be undone.
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
