#include "platform/wayland/ManagerWatch.h"

#include <algorithm>
#include <utility>

namespace seldial::platform::wayland {

void ManagerWatch::cleared(Clock::time_point now) {
  forgetTaker(now);
  cleared_ = now;
  expectedReaders_ = std::exchange(readers_, 0U);
  answered_ = false;
  copied_ = false;
  replaced_ = false;
  awaited_ = takesCleared_;
  again_ = false;
  late_ = now - lastText() < kLatest;
}

void ManagerWatch::clearedAgain(Clock::time_point now) {
  const bool found = replaced_ || hasNewReader();
  cleared(now);
  awaited_ = awaited_ || found;
  again_ = true;
}

void ManagerWatch::clearingReported() {
  answered_ = false;
  replaced_ = false;
  if (!std::exchange(copied_, false)) return;
  text_ = copy_;
  late_ = true;
  expecting_ = true;
}

void ManagerWatch::emptyWasRead(Clock::time_point now) {
  ++readers_;
  read_ = now;
  isRead_ = true;
}

void ManagerWatch::taken(Clock::time_point now, bool withText) {
  forgetTaker(now);
  replaced_ = copied_ && !withText;
  if (!withText) {
    answered_ = true;
    other_ = now;
  } else if (std::exchange(expecting_, false)) {
    copied_ = true;
    copy_ = now;
  } else {
    answered_ = true;
    late_ = late_ || !copied_;
    takesCleared_ = takesCleared_ || (!copied_ && readers_ > 0 && now - cleared_ < kKnownReaction);
    takesCopied_ = takesCopied_ || (copied_ && now - copy_ < kReaction);
    text_ = now;
  }
}

/// If nobody has taken the last copy in time, no manager does so any more, or another program had
/// copied just after us.
void ManagerWatch::forgetTaker(Clock::time_point now) {
  if (copied_ && text_ < copy_ && now - copy_ >= kLatest) takesCopied_ = false;
}

/// The time of the last text that a manager may take up.
ManagerWatch::Clock::time_point ManagerWatch::lastText() const {
  return takesCopied_ ? std::max(text_, copy_) : text_;
}

ManagerWatch::Clock::time_point ManagerWatch::quietFrom() const {
  const auto quiet = std::max(lastText() + kReaction, other_ + kPause);
  if (!awaited_) return quiet;
  if (readers_ < expectedReaders_ || (takesCleared_ && !answered_))
    return std::max(quiet, cleared_ + kKnownReaction);
  return answered_ ? quiet : std::max({quiet, cleared_ + kReaction, read_ + kReaction});
}

void ManagerWatch::becameQuiet() {
  if (!awaited_) return;
  if (answered_) {
    takesCleared_ = true;
  } else if (takesCleared_ && readers_ > 0 && !again_) {
    late_ = true;  // it still runs, and may be slow
  } else {
    takesCleared_ = false;
    harmlessReaders_ = readers_;
  }
}

}  // namespace seldial::platform::wayland
