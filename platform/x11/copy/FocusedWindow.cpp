#include "platform/x11/copy/FocusedWindow.h"

#include <strings.h>

#include <algorithm>
#include <array>
#include <sstream>

namespace seldial::platform::x11 {
namespace {

/// The longest WM_CLASS that is read, in units of four bytes.
constexpr std::uint32_t kLongestName = 256;

/// WM_CLASS names of terminal emulators.
constexpr std::array kTerminals{
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

bool isKnownTerminal(const std::string& name) {
  return std::any_of(kTerminals.begin(), kTerminals.end(),
                     [&](const char* known) { return strcasecmp(name.c_str(), known) == 0; });
}

/// Typed keys go to the innermost window under the pointer when no window has the focus.
xcb_window_t windowUnderPointer(const Connection& connection) {
  auto* const xcb = connection.xcb();
  xcb_window_t window = connection.root();
  for (;;) {
    const auto reply = freed(xcb_query_pointer_reply(xcb, xcb_query_pointer(xcb, window), nullptr));
    if (!reply || reply->child == XCB_WINDOW_NONE) return window;
    window = reply->child;
  }
}

xcb_window_t inputWindow(const Connection& connection) {
  auto* const xcb = connection.xcb();
  const auto reply = freed(xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
  if (!reply || reply->focus == XCB_INPUT_FOCUS_NONE) return XCB_WINDOW_NONE;
  const bool followsPointer =
      reply->focus == XCB_INPUT_FOCUS_POINTER_ROOT || reply->focus == connection.root();
  return followsPointer ? windowUnderPointer(connection) : reply->focus;
}

/// The names in a WM_CLASS property, each of which ends with a zero byte.
std::vector<std::string> namesIn(const xcb_get_property_reply_t& property) {
  std::istringstream text({static_cast<const char*>(xcb_get_property_value(&property)),
                           static_cast<std::size_t>(xcb_get_property_value_length(&property))});
  std::vector<std::string> names;
  for (std::string name; std::getline(text, name, '\0');) names.push_back(name);
  return names;
}

}  // namespace

FocusedWindow findFocusedWindow(const Connection& connection) {
  auto* const xcb = connection.xcb();
  FocusedWindow result{inputWindow(connection), {}};
  for (auto window = result.window; window != XCB_WINDOW_NONE && result.names.empty();) {
    const auto property =
        xcb_get_property(xcb, 0, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 0, kLongestName);
    const auto tree = xcb_query_tree(xcb, window);
    const auto names = freed(xcb_get_property_reply(xcb, property, nullptr));
    const auto around = freed(xcb_query_tree_reply(xcb, tree, nullptr));
    if (names) result.names = namesIn(*names);
    window = around ? around->parent : xcb_window_t{XCB_WINDOW_NONE};
  }
  return result;
}

bool isTerminal(const std::vector<std::string>& names) {
  return std::any_of(names.begin(), names.end(), isKnownTerminal);
}

}  // namespace seldial::platform::x11
