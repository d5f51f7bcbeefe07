// Types Ctrl+Insert with XTEST. Unlike Ctrl+C, it interrupts no program. In applications that are
// known to copy with the Copy key, types that key instead.
//
// An application sees one keyboard: every modifier that the user holds applies to the typed key. So
// the user gets a moment to release the hot key. Modifiers still held after that are released with
// XTEST, and pressed again after the keystroke, so that the user can use the hot key again without
// releasing them. A key pressed with XTEST stays down when the user releases the real key, so each
// of these synthetic keys is released as soon as the user's key goes up.
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

  /// Whether the XTEST keyboard has the keys of the chord.
  [[nodiscard]] bool isPossible(CopyChord chord = CopyChord::kControlInsert);

  /// Waits at most a quarter of a second until the user holds no modifier and no hot key, releases
  /// those that are still down, and presses the keys of the chord.
  void press(CopyChord chord = CopyChord::kControlInsert);

  /// Releases the keys of the chord, and presses the modifiers again that press() has released and
  /// the user still holds.
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

  linux_port::MainLoop& loop_;
  Connection& connection_;
  EventPump& pump_;
  Keyboards& keyboards_;
  HotKeyGrabs& hotKeys_;
  CopyChord chord_ = CopyChord::kControlInsert;  ///< of the last press()
  bool copying_ = false;                         ///< between press() and release()
  bool watching_ = false;                        ///< raw key events are selected
  bool changed_ = false;  ///< the user pressed or released a key since it was last checked
  KeySet taken_;          ///< modifiers that press() released though the user holds them
  KeySet synthetic_;      ///< modifiers pressed with XTEST because the user holds them
  KeySet pressed_;        ///< pressed with XTEST, and not known to be released
};

}  // namespace seldial::platform::x11
