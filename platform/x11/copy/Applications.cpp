#include "platform/x11/copy/Applications.h"

#include <strings.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace seldial::platform::x11 {
namespace {

// Not in this table:
// - gvim takes PRIMARY again while it drops a selection, so an old text would look fresh.
// - GTK labels cannot be told from GTK programs that keep PRIMARY after a key dropped the
// selection.
// - A process with a pseudo-terminal is not taken for a terminal: editors and file managers with a
//   terminal pane have one too, and copy to the clipboard.
constexpr std::array kApplications{
    // Terminals pass an unknown keystroke to the program inside, which may type it or end.
    "Alacritty", "aterm", "com.mitchellh.ghostty", "contour", "cool-retro-term", "deepin-terminal",
    "Eterm", "foot", "gnome-terminal", "gnome-terminal-server", "guake", "kgx", "kitty", "konsole",
    "lilyterm", "lxterminal", "mate-terminal", "mlterm", "org.gnome.Console", "org.gnome.Ptyxis",
    "org.wezfurlong.wezterm", "pterm", "qterminal", "rio", "roxterm", "Rxvt", "sakura", "st",
    "st-256color", "stterm", "terminator", "terminology", "termit", "tilda", "tilix", "URxvt",
    "UXTerm", "wezterm", "x-terminal-emulator", "Xfce4-terminal", "XTerm", "yakuake", "zutty",
    // Selecting takes PRIMARY; no key copies to the clipboard.
    "Dillo",             // web browser; its keys are for navigation
    "MuPDF",             // Ctrl+C alone copies, and only while the marked area is shown
    "org.pwmt.zathura",  // selects with the mouse only, into PRIMARY
    "Xedit",             // Athena text widget; Insert is not bound
    "Xmessage",          // the same widget
    "Xpdf",              // selects with the mouse only, into PRIMARY
};

}  // namespace

bool isReadFromPrimary(const std::vector<std::string>& names) {
  return std::any_of(names.begin(), names.end(), [](const std::string& name) {
    return std::any_of(kApplications.begin(), kApplications.end(),
                       [&](const char* known) { return strcasecmp(name.c_str(), known) == 0; });
  });
}

bool isWine(const std::vector<std::string>& names) {
  constexpr std::string_view kSuffix = ".exe";
  return std::any_of(names.begin(), names.end(), [&](const std::string& name) {
    return name.size() > kSuffix.size() &&
           strcasecmp(name.c_str() + name.size() - kSuffix.size(), kSuffix.data()) == 0;
  });
}

}  // namespace seldial::platform::x11
