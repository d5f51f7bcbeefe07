#pragma once

namespace seldial::platform::x11 {

/// Whether an event of an X connection says that a window has lost, or regained, the keyboard to a
/// grab while the focus stays where it is. A hot key that is pressed is such a grab.
[[nodiscard]] bool isFocusChangeOfGrab(const void* event);

}  // namespace seldial::platform::x11
