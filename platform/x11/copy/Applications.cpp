#include "platform/x11/copy/Applications.h"

#include <strings.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace seldial::platform::x11 {
namespace {

// Not in this table:
// - GTK labels look like any GTK window, and others keep PRIMARY after a key dropped the selection.
// - A process with a pseudo-terminal is not taken for a terminal: editors and file managers with a
//   terminal pane have one too, and copy to the clipboard.
constexpr std::array kApplications{
    // Terminals pass an unknown keystroke to the program inside, which may type it or end.
    "Alacritty", "aterm", "com.mitchellh.ghostty", "contour", "cool-retro-term", "deepin-terminal",
    "Eterm", "foot", "gnome-terminal", "gnome-terminal-server", "guake", "kgx", "kitty", "konsole",
    "lilyterm", "lxterminal", "mate-terminal", "mlterm", "org.gnome.Console", "org.gnome.Ptyxis",
    "org.wezfurlong.wezterm", "pterm", "qterminal", "rio", "roxterm", "Rxvt", "sakura", "st",
    "st-256color", "stterm", "terminator", "termit", "tilda", "tilix", "URxvt", "UXTerm", "wezterm",
    "x-terminal-emulator", "Xfce4-terminal", "XTerm", "yakuake", "zutty",
    // Selecting takes PRIMARY. Neither Ctrl+Insert nor Ctrl+C fills CLIPBOARD.
    "Dillo",             // web browser
    "MuPDF",             // document viewer
    "org.pwmt.zathura",  // document viewer
    "Xedit",             // Athena text widget
    "Xmessage",          // Athena text widget
    "Xpdf",              // document viewer
};

bool isOneOf(const char* known, const std::vector<std::string>& names) {
  return std::any_of(names.begin(), names.end(), [known](const std::string& name) {
    return strcasecmp(name.c_str(), known) == 0;
  });
}

}  // namespace

bool isReadFromPrimary(const std::vector<std::string>& names) {
  return std::any_of(kApplications.begin(), kApplications.end(),
                     [&](const char* known) { return isOneOf(known, names); });
}

// It also drops its selection when a key is typed, and keeps PRIMARY.
bool copiesByCopyKey(const std::vector<std::string>& names) {
  return isOneOf("Alacritty", names);
}

bool isLeftAlone(const std::vector<std::string>& names) {
  // They take PRIMARY again while they drop a selection, so an old text would look fresh.
  // Terminology is a terminal, and Ctrl+Insert makes Vim insert what is typed next.
  constexpr std::array kLeftAlone{"gvim", "neovide", "nvim-qt", "terminology"};
  return std::any_of(kLeftAlone.begin(), kLeftAlone.end(),
                     [&](const char* known) { return isOneOf(known, names); });
}

// Emacs copies the text from the mark to the cursor, active or not. Copying ends an active region,
// and a region that ends goes to PRIMARY.
bool takesPrimaryAfterCopying(const std::vector<std::string>& names) {
  return isOneOf("emacs", names);
}

bool isWine(const std::vector<std::string>& names) {
  constexpr std::string_view kSuffix = ".exe";
  return std::any_of(names.begin(), names.end(), [&](const std::string& name) {
    return name.size() > kSuffix.size() &&
           strcasecmp(name.c_str() + name.size() - kSuffix.size(), kSuffix.data()) == 0;
  });
}

}  // namespace seldial::platform::x11
