// Applications in which the copy keystroke alone does not tell what is selected.
#pragma once

#include <string>
#include <vector>

namespace seldial::platform::x11 {

/// Whether a window with these WM_CLASS names belongs to an application in which the copy keystroke
/// does harm or copies nothing; case is ignored.
bool isReadFromPrimary(const std::vector<std::string>& names);

/// Whether it belongs to a terminal that copies with the key Copy, and does not hand that key to
/// the program inside.
bool copiesByCopyKey(const std::vector<std::string>& names);

/// Whether it belongs to an application whose selection cannot be had: a keystroke does harm, and
/// an old text in PRIMARY looks like a new one.
bool isLeftAlone(const std::vector<std::string>& names);

/// Whether it belongs to an application that also copies what it no longer shows as selected, and
/// takes PRIMARY after it has copied only if it was still selected.
bool takesPrimaryAfterCopying(const std::vector<std::string>& names);

/// Whether a window with these WM_CLASS names is that of a Windows program under Wine.
bool isWine(const std::vector<std::string>& names);

}  // namespace seldial::platform::x11
