#include "platform/x11/TerminalNames.h"

#include <strings.h>

#include <algorithm>
#include <array>

namespace seldial::platform::x11 {
namespace {

constexpr std::array kNames{
    "Alacritty",
    "aterm",
    "com.mitchellh.ghostty",
    "contour",
    "cool-retro-term",
    "deepin-terminal",
    "Eterm",
    "foot",
    "gnome-terminal",
    "gnome-terminal-server",
    "guake",
    "kgx",
    "kitty",
    "konsole",
    "lilyterm",
    "lxterminal",
    "mate-terminal",
    "mlterm",
    "org.gnome.Console",
    "org.gnome.Ptyxis",
    "org.wezfurlong.wezterm",
    "pterm",
    "qterminal",
    "rio",
    "roxterm",
    "Rxvt",
    "sakura",
    "st",
    "st-256color",
    "stterm",
    "terminator",
    "terminology",
    "termit",
    "tilda",
    "tilix",
    "URxvt",
    "UXTerm",
    "wezterm",
    "x-terminal-emulator",
    "Xfce4-terminal",
    "XTerm",
    "yakuake",
};

bool isKnown(const std::string& name) {
  return std::any_of(kNames.begin(), kNames.end(),
                     [&](const char* known) { return strcasecmp(name.c_str(), known) == 0; });
}

}  // namespace

bool isTerminal(const std::vector<std::string>& names) {
  return std::any_of(names.begin(), names.end(), isKnown);
}

}  // namespace seldial::platform::x11
