#include "ucclient/KeyHolders.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>

namespace seldial {
namespace {

struct Holder {
  const char* name;   ///< as the kernel has it, 15 characters at most
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
