// Applications whose PRIMARY selection is read, instead of making them copy to the clipboard.
#pragma once

#include <string>
#include <vector>

namespace seldial::platform::x11 {

/// Whether a window with these WM_CLASS names belongs to an application in which the copy keystroke
/// does harm or copies nothing; case is ignored.
bool isReadFromPrimary(const std::vector<std::string>& names);

/// Whether it belongs to an application whose selection cannot be had: a keystroke does harm, and
/// an old text in PRIMARY looks like a new one.
bool isLeftAlone(const std::vector<std::string>& names);

/// Whether a window with these WM_CLASS names is that of a Windows program under Wine.
bool isWine(const std::vector<std::string>& names);

}  // namespace seldial::platform::x11
