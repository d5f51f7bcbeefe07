#pragma once

#include <cstdint>
#include <optional>

namespace seldial::platform {

/// A key going down or up, as a toolkit hands it on from the display server.
struct HardwareKeyEvent {
  std::uint32_t key = 0;    ///< the server's code of the key
  std::uint32_t state = 0;  ///< the server's modifier state, before the event
  bool pressed = false;     ///< or released
};

/// The same in the terms of hot keys.
struct RecordedKey {
  std::uint16_t keyCode = 0;        ///< virtual key code
  std::uint64_t modifierFlags = 0;  ///< ModifierFlag values, after the event
  bool isModifier = false;          ///< a key that carries a modifier in the user's layout
};

/// The keyboard as a field sees it in which hot keys are recorded. Main thread only.
class RecordingKeyboard {
 public:
  virtual ~RecordingKeyboard() = default;

  /// From now on every key event is read, in order. Keys may be down already.
  virtual void begin() = 0;

  /// A key that carries a modifier in the user's layout is a modifier, wherever it lies: one that
  /// is not in that modifier's own place gets the code of the left one. Nothing for a key without a
  /// virtual key code, and for a lock that goes up.
  virtual std::optional<RecordedKey> read(const HardwareKeyEvent& event) = 0;
};

}  // namespace seldial::platform
