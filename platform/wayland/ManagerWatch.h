// What clipboard managers do. A manager that keeps a copied text takes the clipboard itself, some
// time later, and looks like an application that copies. Its text may be older than our clearing.
#pragma once

#include <chrono>

namespace seldial::platform::wayland {

/// Follows the owners of the clipboard, and tells when a change can only be a copy by the focused
/// application. The compositor does not report which program owns the clipboard. Main thread only.
class ManagerWatch {
 public:
  using Clock = std::chrono::steady_clock;

  /// The time in which a manager takes the clipboard after a change, on a busy machine.
  static constexpr std::chrono::milliseconds kReaction{1000};
  /// The age of a text that no manager puts on the clipboard again, however busy the machine is.
  static constexpr std::chrono::milliseconds kLatest{5000};
  /// The pause after a manager has taken the clipboard without a text, as it does with our empty
  /// one.
  static constexpr std::chrono::milliseconds kPause{200};

  /// We take the clipboard and offer no text.
  void cleared(Clock::time_point now);
  /// We do so again in the same use, because of a text that mayBeFromManager().
  void clearedAgain(Clock::time_point now);
  /// Every change before our own has been reported.
  void clearingReported();
  /// Another program has read our empty clipboard: a manager, as an application would not ask for
  /// its type.
  void emptyWasRead() { ++readers_, isRead_ = true; }
  /// Another program has taken the clipboard.
  void taken(Clock::time_point now, bool withText);
  /// The next text is the one that the focused application copies.
  void expectCopy() { expecting_ = true; }
  /// The copied text has been read.
  void copyWasRead() { expecting_ = false; }

  /// Until when a manager may still put a text on the clipboard that is older than our clearing.
  [[nodiscard]] Clock::time_point quietFrom() const;
  /// It is quiet: remembers whether a manager has taken the cleared clipboard.
  void becameQuiet();

  /// Whether a manager has ever read our empty clipboard, and may put a copy of it there.
  [[nodiscard]] bool isEmptyRead() const { return isRead_; }
  /// Whether a manager may have put a text on the clipboard because it was empty, or later than
  /// kReaction. Then the application must copy once more, after clearedAgain().
  [[nodiscard]] bool mayBeFromManager() const { return !again_ && (late_ || hasNewReader()); }

 private:
  [[nodiscard]] Clock::time_point lastText() const;
  /// Whether it is not known if each reader of our empty clipboard leaves it as it is.
  [[nodiscard]] bool hasNewReader() const { return !awaited_ && readers_ > harmlessReaders_; }

  Clock::time_point cleared_;
  Clock::time_point text_;        ///< the last unexpected text
  Clock::time_point copy_;        ///< the last expected text
  Clock::time_point other_;       ///< the last change without a text
  unsigned harmlessReaders_ = 0;  ///< the number of managers that have left our empty one as it is
  bool takesCleared_ = false;     ///< a manager takes cleared clipboards
  bool takesCopied_ = false;      ///< a manager takes the clipboard after a copy
  bool isRead_ = false;           ///< our empty one, ever
  bool expecting_ = false;        ///< from expectCopy() to the text

  // Since the last clearing.
  unsigned readers_ = 0;   ///< of our empty clipboard
  bool answered_ = false;  ///< a manager has taken it
  bool copied_ = false;    ///< the expected text has come
  bool awaited_ = false;   ///< a manager is given the time to take it
  bool again_ = false;     ///< it was the second one
  bool late_ = false;      ///< an older text may be put back later than kReaction
};

}  // namespace seldial::platform::wayland
