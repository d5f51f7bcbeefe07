// Applications in which the copy keystroke does not simply copy the selection, or does harm. Names
// are compared without regard to case: WM_CLASS on X11, the application ID or Xwayland's WM_CLASS
// on Wayland.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace seldial::platform::linux_port {

/// Whether a window with these WM_CLASS names belongs to an application in which the copy keystroke
/// does harm or copies nothing.
bool isReadFromPrimary(const std::vector<std::string>& names);

/// Whether a window with these WM_CLASS names belongs to a terminal that copies with the Copy key
/// and does not pass that key to the program running in it.
bool copiesWithCopyKey(const std::vector<std::string>& names);

/// Whether a window with these names belongs to an application whose selection cannot be read: a
/// keystroke does harm, and an old text in PRIMARY looks like a new one.
bool isUnsupported(const std::vector<std::string>& names);

/// Whether a window with these names belongs to an application that also copies text that it no
/// longer shows as selected, and that takes PRIMARY after the copy only if the text was still
/// selected.
bool takesPrimaryAfterCopying(const std::vector<std::string>& names);

/// Whether a window with these names belongs to a Windows program under Wine.
bool isWine(const std::vector<std::string>& names);

/// Whether `text`, copied in a program with these names (WM_CLASS or application ID), may be the
/// current line instead of a selection: some editors copy it if nothing is selected. Such a text
/// ends with its only newline; Qt Creator puts the newline in front of the last line. A line that
/// was selected together with its newline, as by a triple click, looks the same. The only line of a
/// document in Qt Creator is not detected.
bool mayBeCurrentLine(const std::vector<std::string>& names, std::string_view text);

// On Wayland, where PRIMARY is not read, the kind of a terminal determines how it copies.

/// How a terminal copies its selection without typing into the program running in it.
enum class TerminalKind {
  kNone,   ///< not a terminal that we know
  kVte,    ///< by Ctrl+Insert; it copies an empty text if nothing is selected
  kOther,  ///< by the Copy key, if at all
};

/// The kind of the program whose window has this name.
[[nodiscard]] TerminalKind terminalKind(const std::string& name);

}  // namespace seldial::platform::linux_port
