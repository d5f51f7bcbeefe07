#include "ucclient/Dialling.h"

#include <sys/wait.h>

#include <array>
#include <charconv>
#include <utility>

#include "client/Options.h"
#include "platform/System.h"
#include "ucclient/ChildProcess.h"
#include "ucclient/Notifications.h"
#include "ucclient/Paths.h"

namespace seldial {
namespace {

/// Replaces the placeholders by the values, from left to right. Placeholders within the values are
/// not replaced.
std::string replacePlaceholders(const std::string& word, const std::array<std::string, 3>& values) {
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

/// The maximum number of choices for one selection.
constexpr std::size_t kMaxChoices = 20;

}  // namespace

std::string dialledNumber(const FoundNumber& number, const DialSettings& settings) {
  const bool hasOnlyWrittenForm = number.international.empty();
  if (settings.format == NumberFormat::kRaw || hasOnlyWrittenForm) {
    const bool plusAfterPrefix = !settings.prefix.empty() && number.written.starts_with('+');
    return plusAfterPrefix ? "" : settings.prefix + number.written;
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
    arguments.push_back(replacePlaceholders(word, values));
    if (arguments.back().find('\0') != std::string::npos) {
      error = "the selection contains a NUL byte, which an argument cannot contain";
      return std::nullopt;
    }
    if (!word.starts_with('-') && arguments.back().starts_with('-')) {
      error = "the selection begins with a hyphen, so the program could take it for an option";
      return std::nullopt;
    }
  }
  return arguments;
}

/// An open window in which the user chooses a number. It is closed by the destructor.
class Dialler::Choice : public std::enable_shared_from_this<Choice> {
 public:
  using ChoiceHandler = std::function<void(const FoundNumber&)>;

  Choice(std::vector<FoundNumber> numbers, std::shared_ptr<MainThread> mainThread,
         ChoiceHandler chosen)
      : numbers_(std::move(numbers)),
        mainThread_(std::move(mainThread)),
        chosen_(std::move(chosen)) {}

  /// False when the window cannot be opened; `error` then says why.
  bool open(const DialSettings& settings, std::string& error) {
    std::string lines;
    for (const FoundNumber& number : numbers_) {
      const std::string dialled = dialledNumber(number, settings);
      lines += dialled.empty() ? number.written : dialled;
      lines += number.extension.empty() ? "\n" : " ext. " + number.extension + "\n";
    }
    ChildProcess::Events events;
    events.wroteLine = [weak = weak_from_this(), main = mainThread_](const std::string& line) {
      main->post([weak, line] {
        if (const auto self = weak.lock()) self->answered(line);
      });
    };
    events.ended = [weak = weak_from_this(), main = mainThread_] {
      main->post([weak] {
        if (const auto self = weak.lock()) self->window_->wait();
      });
    };
    window_ = ChildProcess::start({findProgram("seldial-choose", executableDirectory())},
                                  std::move(events), error, lines);
    return window_ != nullptr;
  }

 private:
  /// `line` is the position of the number in the list. A cancelled window prints nothing.
  void answered(const std::string& line) {
    std::size_t which = numbers_.size();
    std::from_chars(line.data(), line.data() + line.size(), which);
    if (which < numbers_.size()) chosen_(numbers_[which]);
  }

  const std::vector<FoundNumber> numbers_;
  const std::shared_ptr<MainThread> mainThread_;
  const ChoiceHandler chosen_;
  std::unique_ptr<ChildProcess> window_;
};

Dialler::Dialler(DialSettings settings, std::shared_ptr<MainThread> mainThread, Events events)
    : settings_(std::move(settings)),
      mainThread_(std::move(mainThread)),
      events_(std::make_shared<const Events>(std::move(events))) {}

Dialler::~Dialler() = default;

void Dialler::dial(const std::string& selection) {
  choice_.reset();
  pending_.reset();
  if (selection.empty()) return events_->notDialled("nothing was selected");
  if (selection.size() > kMaxSelectionLength) {
    return events_->notDialled("the selection is too long to be a telephone number");
  }
  FoundNumbers found = findNumbers(selection, settings_.region);
  if (found.numbers.empty()) {
    return events_->notDialled("there is no telephone number in the selection");
  }
  const bool clear = found.certain && found.numbers.size() == 1;
  if (clear && settings_.confirm == Confirm::kUndo) {
    return startUnlessUndone(selection, found.numbers.front());
  }
  if (clear && settings_.confirm != Confirm::kAlways) {
    return start(selection, found.numbers.front());
  }
  if (settings_.confirm == Confirm::kNever) {
    return events_->notDialled(found.numbers.size() > 1
                                   ? "there is more than one telephone number in the selection"
                                   : "the telephone number is ambiguous");
  }
  choose(selection, std::move(found.numbers));
}

/// If the desktop cannot offer to undo the call, the user is asked before it.
void Dialler::startUnlessUndone(const std::string& selection, const FoundNumber& number) {
  pending_ = std::make_shared<const char>();
  const auto ended = [=, this](UndoOffer outcome) {
    pending_.reset();
    if (outcome == UndoOffer::kTimeOver) return start(selection, number);
    if (outcome == UndoOffer::kNotShown) return choose(selection, {number});
    events_->notDialled("it was undone");
  };
  offerUndo(translated("Calling %1", {dialledNumber(number, settings_)}), settings_.undoTime,
            [ended, main = mainThread_, weak = std::weak_ptr(pending_)](UndoOffer outcome) {
              main->post([=] {
                if (weak.lock()) ended(outcome);
              });
            });
}

void Dialler::choose(const std::string& selection, std::vector<FoundNumber> numbers) {
  if (numbers.size() > kMaxChoices) numbers.resize(kMaxChoices);
  choice_ = std::make_shared<Choice>(
      std::move(numbers), mainThread_,
      [this, selection](const FoundNumber& number) { start(selection, number); });
  std::string error;
  if (choice_->open(settings_, error)) return;
  choice_.reset();
  events_->notDialled("the number must be confirmed, but " + error);
}

void Dialler::start(const std::string& selection, const FoundNumber& number) {
  std::string error;
  const auto arguments = dialArguments(number, selection, settings_, error);
  const auto ended = [main = mainThread_, events = events_,
                      program = arguments ? arguments->front() : ""](int status) {
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return;
    main->post([=] { events->failed(program + " " + describeExitStatus(status)); });
  };
  if (arguments && startDetached(*arguments, ended, error)) {
    return events_->dialled(dialledNumber(number, settings_));
  }
  events_->notDialled(error);
}

}  // namespace seldial
