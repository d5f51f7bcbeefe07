#include "platform/x11/GrabFocus.h"

#include "platform/x11/Xcb.h"

namespace seldial::platform::x11 {

bool isFocusChangeOfGrab(const void* event) {
  const auto& generic = *static_cast<const xcb_generic_event_t*>(event);
  if (kindOf(generic) != XCB_FOCUS_IN && kindOf(generic) != XCB_FOCUS_OUT) return false;
  const auto mode = as<xcb_focus_in_event_t>(generic).mode;
  return mode == XCB_NOTIFY_MODE_GRAB || mode == XCB_NOTIFY_MODE_UNGRAB;
}

}  // namespace seldial::platform::x11
