#include "platform/wayland/Terminals.h"

#include <strings.h>

#include <algorithm>
#include <array>

namespace seldial::platform::wayland {
namespace {

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

TerminalKind terminalKind(const std::string& name) {
  const auto* const found = std::find_if(
      kTerminals.begin(), kTerminals.end(),
      [&](const Terminal& terminal) { return strcasecmp(name.c_str(), terminal.name) == 0; });
  return found != kTerminals.end() ? found->kind : TerminalKind::kNone;
}

}  // namespace seldial::platform::wayland
