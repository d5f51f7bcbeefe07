// Terminal emulators, known by the names that their windows carry.
//
// A terminal hands a copy keystroke that it does not know to the program inside, which may type it
// or die of it. Its selection can be read without any keystroke.
#pragma once

#include <string>
#include <vector>

namespace seldial::platform::x11 {

/// Whether a window with these WM_CLASS names is a terminal; the case of letters does not count.
bool isTerminal(const std::vector<std::string>& names);

}  // namespace seldial::platform::x11
