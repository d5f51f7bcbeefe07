// The window that receives what is typed now, and whose it is.
#pragma once

#include <string>
#include <vector>

#include "platform/x11/Connection.h"

namespace seldial::platform::x11 {

struct FocusedWindow {
  xcb_window_t window = XCB_WINDOW_NONE;  ///< none when nothing that is typed arrives anywhere
  std::vector<std::string> names;         ///< WM_CLASS, of the window or the nearest one around it
};

/// Two round trips, and one for every window that has to be passed on the way to the names.
FocusedWindow findFocusedWindow(const Connection& connection);

}  // namespace seldial::platform::x11
