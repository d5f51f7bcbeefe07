#include "platform/linux/Applications.h"

#include <strings.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace seldial::platform::linux_port {
namespace {

// Not in this table:
// - GTK labels look like any GTK window, and others keep PRIMARY after a key press has cleared the
// selection.
// - A process with a pseudo-terminal is not treated as a terminal: editors and file managers with a
// terminal pane have one too, and copy to the clipboard.
constexpr std::array kApplications{
    // Terminals pass an unknown keystroke to the program running in them, which may insert it or
    // end.
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

/// Editors that copy the current line if nothing is selected. Verified with Kate, KWrite and Qt
/// Creator; documented for the others.
constexpr std::array kEditors{
    // The KTextEditor component.
    "kate",
    "kdevelop",
    "kile",
    "kwrite",
    "org.kde.kate",
    "org.kde.kdevelop",
    "org.kde.kile",
    "org.kde.kwrite",
    // Visual Studio Code and its variants.
    "code",
    "code - insiders",
    "code-oss",
    "codium",
    "vscodium",
    "atom",
    "pulsar",
    "notepad++.exe",  // under Wine
    "org.qt-project.qtcreator",
    "qtcreator",
    "sublime_text",
};

/// The prefix of names such as "jetbrains-idea".
constexpr std::string_view kJetBrains = "jetbrains-";

bool isOneOf(const char* known, const std::vector<std::string>& names) {
  return std::any_of(names.begin(), names.end(), [known](const std::string& name) {
    return strcasecmp(name.c_str(), known) == 0;
  });
}

bool isEditor(const std::string& name) {
  if (strncasecmp(name.c_str(), kJetBrains.data(), kJetBrains.size()) == 0) return true;
  return std::any_of(kEditors.begin(), kEditors.end(),
                     [&](const char* editor) { return strcasecmp(name.c_str(), editor) == 0; });
}

struct Terminal {
  const char* name;
  TerminalKind kind;
};

/// Application ids, and window classes on Xwayland.
constexpr auto kTerminals = std::to_array<Terminal>({
    {"Alacritty", TerminalKind::kOther},
    {"aterm", TerminalKind::kOther},
    {"com.gexperts.Tilix", TerminalKind::kVte},
    {"com.mitchellh.ghostty", TerminalKind::kOther},
    {"contour", TerminalKind::kOther},
    {"cool-retro-term", TerminalKind::kOther},
    {"deepin-terminal", TerminalKind::kOther},
    {"Eterm", TerminalKind::kOther},
    {"foot", TerminalKind::kOther},
    {"foot-server", TerminalKind::kOther},
    {"footclient", TerminalKind::kOther},
    {"ghostty", TerminalKind::kOther},
    {"gnome-terminal", TerminalKind::kVte},
    {"gnome-terminal-server", TerminalKind::kVte},
    {"guake", TerminalKind::kVte},
    {"havoc", TerminalKind::kOther},
    {"io.elementary.terminal", TerminalKind::kVte},
    {"kgx", TerminalKind::kVte},
    {"kitty", TerminalKind::kOther},
    {"konsole", TerminalKind::kOther},
    {"lilyterm", TerminalKind::kVte},
    {"lxterminal", TerminalKind::kVte},
    {"mate-terminal", TerminalKind::kVte},
    {"mlterm", TerminalKind::kOther},
    {"org.codeberg.dnkl.foot", TerminalKind::kOther},
    {"org.contourterminal.Contour", TerminalKind::kOther},
    {"org.gnome.Console", TerminalKind::kVte},
    {"org.gnome.Ptyxis", TerminalKind::kVte},
    {"org.gnome.Terminal", TerminalKind::kVte},
    {"org.kde.konsole", TerminalKind::kOther},
    {"org.kde.yakuake", TerminalKind::kOther},
    {"org.wezfurlong.wezterm", TerminalKind::kOther},
    {"org.xfce.terminal", TerminalKind::kVte},
    {"pterm", TerminalKind::kOther},
    {"qterminal", TerminalKind::kOther},
    {"rio", TerminalKind::kOther},
    {"roxterm", TerminalKind::kVte},
    {"Rxvt", TerminalKind::kOther},
    {"sakura", TerminalKind::kVte},
    {"st", TerminalKind::kOther},
    {"st-256color", TerminalKind::kOther},
    {"stterm", TerminalKind::kOther},
    {"terminator", TerminalKind::kVte},
    {"terminology", TerminalKind::kOther},
    {"termit", TerminalKind::kVte},
    {"tilda", TerminalKind::kVte},
    {"tilix", TerminalKind::kVte},
    {"URxvt", TerminalKind::kOther},
    {"UXTerm", TerminalKind::kOther},
    {"wezterm", TerminalKind::kOther},
    {"x-terminal-emulator", TerminalKind::kOther},
    {"Xfce4-terminal", TerminalKind::kVte},
    {"XTerm", TerminalKind::kOther},
    {"yakuake", TerminalKind::kOther},
});

}  // namespace

bool isReadFromPrimary(const std::vector<std::string>& names) {
  return std::any_of(kApplications.begin(), kApplications.end(),
                     [&](const char* known) { return isOneOf(known, names); });
}

// Alacritty also clears its selection when a key is typed, but keeps PRIMARY.
bool copiesWithCopyKey(const std::vector<std::string>& names) {
  return isOneOf("Alacritty", names);
}

bool isUnsupported(const std::vector<std::string>& names) {
  // They take PRIMARY again when they clear a selection, so an old text would look new. Terminology
  // is a terminal, and Ctrl+Insert makes Vim insert what is typed next.
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

bool mayBeCurrentLine(const std::vector<std::string>& names, std::string_view text) {
  const auto newline = text.find('\n');
  const bool isOnly = newline != std::string_view::npos && text.rfind('\n') == newline;
  const bool isLine = isOnly && (newline == 0 || newline == text.size() - 1);
  return isLine && std::any_of(names.begin(), names.end(), isEditor);
}

TerminalKind terminalKind(const std::string& name) {
  const auto* const found = std::find_if(
      kTerminals.begin(), kTerminals.end(),
      [&](const Terminal& terminal) { return strcasecmp(name.c_str(), terminal.name) == 0; });
  return found != kTerminals.end() ? found->kind : TerminalKind::kNone;
}

}  // namespace seldial::platform::linux_port
