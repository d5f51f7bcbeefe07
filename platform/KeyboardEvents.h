#pragma once

#include <cstdint>
#include <memory>

#include "platform/VirtualKeys.h"

namespace seldial::platform {

/// The state that a synthetic event starts from: the hardware's
/// (kCGEventSourceStateHIDSystemState).
inline constexpr std::int32_t kEventSourceStateHIDSystemState = 1;
/// Where a synthetic event enters the system: where the hardware's do (kCGHIDEventTap).
inline constexpr std::uint32_t kHIDEventTap = 0;

/// Where synthetic events come from. Its making may fail; an event needs none.
class KeyboardEventSource {
 public:
  virtual ~KeyboardEventSource() = default;
};

/// One key going down or up, made but not yet posted.
class KeyboardEvent {
 public:
  virtual ~KeyboardEvent() = default;

  /// Replaces the modifier flags that the event was created with.
  virtual void setFlags(std::uint64_t flags) = 0;

  /// Hands the event to the system, as if typed; the frontmost application receives it.
  virtual void post(std::uint32_t tapLocation) = 0;
};

/// Makes synthetic keyboard events. Main thread only.
class KeyboardEvents {
 public:
  virtual ~KeyboardEvents() = default;

  /// Null when the system refuses.
  virtual std::unique_ptr<KeyboardEventSource> createSource(std::int32_t state) = 0;

  /// `source` may be null. `keyCode` is a virtual key code. Null when the system refuses.
  virtual std::unique_ptr<KeyboardEvent> createKeyboardEvent(KeyboardEventSource* source,
                                                             std::uint16_t keyCode,
                                                             bool keyDown) = 0;
};

}  // namespace seldial::platform
