// Ctrl+Insert, typed with XTEST. It copies wherever Ctrl+C does, and it interrupts no program. Or
// the key Copy, where that is known to copy.
//
// An application sees one keyboard: every modifier that the user holds is part of what is typed. So
// the user gets a moment to release the hot key; modifiers still held after that are released with
// XTEST, and pressed again after the keystroke, so that the hot key can be used again without
// letting go of them. A key pressed with XTEST stays down when the user releases the real one, so
// each of these synthetic keys is released as soon as the user's key goes up.
#pragma once

#include "platform/x11/Session.h"

namespace seldial::platform::x11 {

enum class CopyChord { kControlInsert, kCopyKey };

/// Main thread only.
class CopyKeystroke final : public EventHandler {
 public:
  explicit CopyKeystroke(Session& session);
  /// Releases the synthetic keys.
  ~CopyKeystroke() override;
  CopyKeystroke(const CopyKeystroke&) = delete;
  CopyKeystroke& operator=(const CopyKeystroke&) = delete;

  /// Whether the keyboard through which programs type has the keys of the chord.
  [[nodiscard]] bool isPossible(CopyChord chord = CopyChord::kControlInsert);

  /// Waits at most a quarter of a second until the user holds no modifier and no hot key, releases
  /// what is still down, and presses the keys of the chord.
  void press(CopyChord chord = CopyChord::kControlInsert);

  /// Releases them, and presses again the modifiers that press() released and the user still holds.
  void release();

  bool handle(const xcb_generic_event_t& event) override;

 private:
  void releaseHeldKeys();
  void pressHeldModifiersAgain();
  void releaseSyntheticKeys();
  void releaseSyntheticKeysExcept(const KeySet& physical);
  void releasedByUser(xcb_keycode_t key);
  void watchKeys();
  void typeAll(const KeySet& keys, bool down);
  void type(xcb_keycode_t key, bool down);

  Connection& connection_;
  EventPump& pump_;
  Keyboards& keyboards_;
  HotKeyGrabs& hotKeys_;
  CopyChord chord_ = CopyChord::kControlInsert;  ///< the last one
  bool underWay_ = false;                        ///< between press() and release()
  bool watching_ = false;                        ///< raw key events are selected
  bool changed_ = false;  ///< the user pressed or released a key since it was last checked
  KeySet taken_;          ///< modifiers that press() released though the user holds them
  KeySet synthetic_;      ///< modifiers pressed with XTEST because the user holds them
  KeySet pressed_;        ///< pressed with XTEST, and not known to be released
};

}  // namespace seldial::platform::x11
