// Which desktop runs, and which of its programs use hot keys.
#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>

#include "platform/System.h"
#include "ucclient/Check.h"

namespace seldial {
namespace {

struct Mechanism {
  const char* compositor;  ///< how its name begins: KWin's may be kwin_wayland_wrapper
  const char* text;
};

constexpr const char* kNothing =
    "no access to the clipboard for programs, so there will be no hot key";

constexpr Mechanism kMechanisms[]{
    {"kwin_wayland", "hot key by Plasma's global shortcuts, copying by fake input"},
    {"gnome-shell",
     "hot key by the desktop portal, copying by Mutter's interface for remote desktops"},
    {"weston", kNothing},
    {"cage", kNothing},
};

constexpr const char* kSway = "hot key by bindings over SWAYSOCK, copying by a virtual keyboard";
constexpr const char* kPress =
    "no hot key for programs; bind a key to the command seldial-uc press in its configuration";

struct Holder {
  const char* name;   ///< as the kernel stores it, at most 15 characters
  const char* place;  ///< where its hot keys are set
};

constexpr Holder kHolders[] = {
    {"gnome-shell", "Settings, Keyboard"},
    {"gsd-media-keys", "Settings, Keyboard"},
    {"cinnamon", "System Settings, Keyboard"},
    {"kglobalaccel5", "System Settings, Shortcuts"},
    {"kglobalacceld", "System Settings, Shortcuts"},
    {"kwin_x11", "System Settings, Shortcuts"},
    {"kwin_wayland", "System Settings, Shortcuts"},
    {"xfsettingsd", "Settings, Keyboard"},
    {"xfwm4", "Settings, Window Manager"},
    {"marco", "Keyboard Shortcuts"},
    {"mate-settings-d", "Keyboard Shortcuts"},
    {"lxqt-globalkeys", "Shortcut Keys"},
    {"openbox", "rc.xml"},
    {"fluxbox", "its file keys"},
    {"icewm", "its file keys"},
    {"i3", "its configuration"},
    {"sway", "its configuration"},
    {"awesome", "rc.lua"},
    {"bspwm", "its configuration"},
    {"herbstluftwm", "its autostart"},
    {"sxhkd", "sxhkdrc"},
    {"xbindkeys", ".xbindkeysrc"},
    {"ibus-daemon", "its preferences"},
    {"fcitx", "its configuration"},
    {"fcitx5", "its configuration"},
    {"copyq", "its preferences"},
    {"clipit", "its preferences"},
    {"parcellite", "its preferences"},
    {"diodon", "its preferences"},
    {"klipper", "its preferences"},
    {"gpaste-daemon", "its preferences"},
    {"flameshot", "its configuration"},
    {"guake", "its preferences"},
    {"tilda", "its preferences"},
    {"yakuake", "its preferences"},
    {"albert", "its settings"},
    {"ulauncher", "its preferences"},
    {"seldial", "set by another client"},
};

/// Whether the process was started for another display than this one.
bool isOnOtherDisplay(const std::string& directory) {
  const char* const display = std::getenv("DISPLAY");
  std::ifstream file(directory + "/environ");
  for (std::string variable; display != nullptr && std::getline(file, variable, '\0');) {
    if (variable.starts_with("DISPLAY=")) return variable != std::string("DISPLAY=") + display;
  }
  return false;
}

/// The name of a process of this user; empty for others.
std::string nameOf(const std::string& directory) {
  struct stat status {};
  std::string name;
  if (stat(directory.c_str(), &status) != 0 || status.st_uid != geteuid()) return name;
  std::ifstream file(directory + "/comm");
  std::getline(file, name);
  return name;
}

}  // namespace

std::optional<std::string> compositorAt(const std::string& display) {
  const char* const directory = std::getenv("XDG_RUNTIME_DIR");
  const bool isPath = display.starts_with('/');
  if (!isPath && directory == nullptr) return std::nullopt;
  const auto process =
      platform::socketOwner(isPath ? display : std::string(directory) + "/" + display);
  if (!process) return std::nullopt;
  std::string name;
  std::getline(std::ifstream("/proc/" + std::to_string(*process) + "/comm"), name);
  return name;
}

std::string mechanismFor(const std::string& compositor) {
  for (const auto& mechanism : kMechanisms) {
    if (compositor.starts_with(mechanism.compositor)) return mechanism.text;
  }
  return std::getenv("SWAYSOCK") != nullptr ? kSway : kPress;
}

std::vector<std::string> likelyKeyHolders() {
  std::vector<std::string> holders;
  const std::unique_ptr<DIR, int (*)(DIR*)> processes(opendir("/proc"), closedir);
  while (const auto* const entry = processes ? readdir(processes.get()) : nullptr) {
    const std::string process = entry->d_name;
    if (process.find_first_not_of("0123456789") != std::string::npos) continue;
    const std::string name = nameOf("/proc/" + process);
    const auto* const known =
        std::find_if(std::begin(kHolders), std::end(kHolders),
                     [&](const Holder& holder) { return name == holder.name; });
    if (known == std::end(kHolders) || isOnOtherDisplay("/proc/" + process)) continue;
    const std::string text = name + " (" + known->place + ")";
    if (std::find(holders.begin(), holders.end(), text) == holders.end()) holders.push_back(text);
  }
  return holders;
}

}  // namespace seldial
