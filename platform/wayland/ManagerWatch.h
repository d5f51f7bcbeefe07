// Detects texts that a clipboard manager puts back. A manager that keeps copied texts takes over
// the clipboard some time after each copy and then looks like an application that copies. Its text
// may be older than our clearing.
#pragma once

#include <chrono>

namespace seldial::platform::wayland {

/// Tracks the changes of the clipboard and decides when a change can only be a copy by the focused
/// application. The compositor does not report which program owns the clipboard. Main thread only.
class ManagerWatch {
 public:
  using Clock = std::chrono::steady_clock;

  /// How long a manager may take, on a busy machine, to take over the clipboard after a change, or
  /// after it has read our empty one.
  static constexpr std::chrono::milliseconds kReaction{1000};
  /// How long a manager that has taken over or read the previous cleared clipboard may take to do
  /// so again.
  static constexpr std::chrono::milliseconds kKnownReaction{2000};
  /// The age from which no manager puts a text back any more, however busy the machine is.
  static constexpr std::chrono::milliseconds kLatest{5000};
  /// The pause after a manager has taken over the clipboard without a text, for example with a copy
  /// of our empty one.
  static constexpr std::chrono::milliseconds kPause{200};

  /// We have taken the clipboard, without a text.
  void cleared(Clock::time_point now);
  /// Like cleared(), for the second time in the same use because of mayBeFromManager().
  void clearedAgain(Clock::time_point now);
  /// All changes before our own have been reported.
  void clearingReported();
  /// Another program has read our empty clipboard. It is a manager: an application would not
  /// request its type.
  void emptyWasRead(Clock::time_point now);
  /// Another program has taken the clipboard.
  void taken(Clock::time_point now, bool withText);
  /// From now on, the next text is the copy by the focused application.
  void expectCopy() { expecting_ = true; }
  /// A manager has put an empty text in place of the expected one.
  void copyWasReplaced() { replaced_ = true; }
  /// The copied text has been read.
  void copyWasRead() { expecting_ = false; }

  /// The time until which a manager may still put back a text that is older than our clearing.
  [[nodiscard]] Clock::time_point quietFrom() const;
  /// The clipboard is quiet. Remembers whether a manager has taken over the cleared clipboard.
  void becameQuiet();

  /// Whether a manager has ever read our empty clipboard, and may put back a copy of it.
  [[nodiscard]] bool isEmptyRead() const { return isRead_; }
  /// Whether a manager has put a copy of our empty clipboard in place of the expected text.
  [[nodiscard]] bool isCopyReplaced() const { return replaced_; }
  /// Whether the text may be one that a manager put back because the clipboard was empty, or later
  /// than kReaction, or isCopyReplaced(). Then the application must copy again, after
  /// clearedAgain().
  [[nodiscard]] bool mayBeFromManager() const {
    return !again_ && (late_ || replaced_ || hasNewReader());
  }

 private:
  void forgetTaker(Clock::time_point now);
  [[nodiscard]] Clock::time_point lastText() const;
  /// Whether a manager that is not known to leave our empty clipboard alone has read it.
  [[nodiscard]] bool hasNewReader() const { return !awaited_ && readers_ > harmlessReaders_; }

  Clock::time_point cleared_;
  Clock::time_point text_;        ///< the last unexpected text
  Clock::time_point copy_;        ///< the last expected text
  Clock::time_point other_;       ///< the last change without a text
  unsigned harmlessReaders_ = 0;  ///< how many managers are known to leave our empty one alone
  bool takesCleared_ = false;     ///< a manager takes cleared clipboards
  bool takesCopied_ = false;      ///< a manager takes the clipboard after a copy
  bool isRead_ = false;           ///< our empty one, at any time
  bool expecting_ = false;        ///< from expectCopy() to the text

  // Since the last clearing.
  unsigned readers_ = 0;          ///< of our empty clipboard
  unsigned expectedReaders_ = 0;  ///< how many read the previous one
  Clock::time_point read_;        ///< when the last one read it
  bool answered_ = false;         ///< a manager has taken it
  bool copied_ = false;           ///< the expected text has arrived
  bool awaited_ = false;          ///< we wait for a manager to take it
  bool again_ = false;            ///< it was the second one of a use
  bool replaced_ = false;         ///< the expected text was replaced by nothing or an empty one
  bool late_ = false;             ///< an older text may be put back later than kReaction
};

}  // namespace seldial::platform::wayland
