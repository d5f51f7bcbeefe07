// The user's keyboard: the characters of its keys, and its key events as virtual keys.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/VirtualKeys.h"

namespace seldial::platform {

/// The keyboard layout that the user has chosen. Main thread only.
class KeyboardLayout {
 public:
  virtual ~KeyboardLayout() = default;

  /// The characters that a key types in the current layout, as UTF-8. Nothing when it types none
  /// (a dead key, for example) or there is no layout. `keyCode` is a VirtualKey;
  /// `modifierKeyState` are HotKeyModifier bits, unshifted. A layout expects modifiers eight bits
  /// lower, so the result is the key's plain character on every desktop; this is kept on purpose.
  [[nodiscard]] virtual std::optional<std::string> translate(std::uint16_t keyCode,
                                                             std::uint32_t modifierKeyState) = 0;
};

/// The keyboard layout of the desktop that the program is linked for. Never null; without a desktop
/// no key types anything.
std::shared_ptr<KeyboardLayout> makeSystemKeyboardLayout();

/// Reads the native key events that a toolkit passes to a field in which hot keys are recorded.
/// Main thread only.
class RecordingKeyboard {
 public:
  virtual ~RecordingKeyboard() = default;

  /// Starts a recording: every key event from now on is passed to read(), in order. Keys may be
  /// down already.
  virtual void begin() = 0;

  /// Translates one native event. `key` is the display server's code of the key, `state` its
  /// modifier state before the event, `pressed` whether the key went down. The result has type,
  /// keyCode and modifierFlags (those after the event).
  ///
  /// A key that the user's layout maps to a modifier is a modifier key (kFlagsChanged) wherever it
  /// is. If it is not at the usual position of that modifier, it gets the code of the modifier's
  /// left key. Nothing for a key without a virtual key code, or for a lock key that is released.
  virtual std::optional<KeyEvent> read(std::uint32_t key, std::uint32_t state, bool pressed) = 0;
};

/// The keyboard ports of a program with windows.
struct KeyboardPorts {
  std::shared_ptr<KeyboardLayout> layout;        ///< never null
  std::shared_ptr<RecordingKeyboard> recording;  ///< null where no key can be recorded
};

}  // namespace seldial::platform
