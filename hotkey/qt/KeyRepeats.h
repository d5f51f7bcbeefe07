#pragma once

#include <QKeyEvent>

namespace seldial {

/// Tells the presses of a key that only repeat. On X11 a held key goes up and down again in one
/// instant, and Qt knows what that is only if it happened to read both at once. Sees the presses
/// and releases of keys in order, each of them once or several times.
class KeyRepeats {
 public:
  /// Whether the event is of a key that only repeats.
  [[nodiscard]] bool isRepeat(const QKeyEvent& event) {
    const bool again = event.nativeScanCode() == key_ && event.timestamp() == released_;
    if (event.type() == QEvent::KeyPress) return again || event.isAutoRepeat();
    key_ = event.nativeScanCode();
    released_ = event.timestamp();
    return event.isAutoRepeat();
  }

 private:
  quint32 key_ = 0;
  quint64 released_ = 0;  ///< when it last went up, ms
};

}  // namespace seldial
