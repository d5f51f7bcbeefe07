// Editors whose Copy takes the line of the cursor when nothing is selected.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace seldial::platform::x11 {

/// Whether `text`, copied in a program with these names (WM_CLASS, application id; case is
/// ignored), may be the line of the cursor instead of a selection. Such a text ends with its only
/// newline; Qt Creator puts it in front of the last line. A line selected together with its
/// newline, as by a triple click, looks the same. The only line of a document in Qt Creator is not
/// noticed.
bool mayBeCurrentLine(const std::vector<std::string>& names, std::string_view text);

}  // namespace seldial::platform::x11
