// The window that receives typed keys, and whether a terminal emulator owns it.
//
// A terminal passes a copy keystroke that it does not know to the program inside, which may type it
// or end. Its selection can be read without any keystroke.
#pragma once

#include <string>
#include <vector>

#include "platform/x11/Connection.h"

namespace seldial::platform::x11 {

struct FocusedWindow {
  xcb_window_t window = XCB_WINDOW_NONE;  ///< none when typed keys go nowhere
  std::vector<std::string> names;         ///< WM_CLASS of the window or its nearest named ancestor
};

/// Takes one round trip, and one for each window up to the one with the names.
FocusedWindow findFocusedWindow(const Connection& connection);

/// Whether a window with these WM_CLASS names is a terminal emulator; case is ignored.
bool isTerminal(const std::vector<std::string>& names);

}  // namespace seldial::platform::x11
