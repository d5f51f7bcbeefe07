#include "ucclient/Compositor.h"

#include <cstdlib>
#include <fstream>

#include "platform/SocketOwner.h"

namespace seldial {
namespace {

struct Mechanism {
  const char* compositor;  ///< how its name begins: KWin's may be kwin_wayland_wrapper
  const char* text;
};

constexpr Mechanism kMechanisms[]{
    {"kwin_wayland", "hot key by Plasma's global shortcuts, copying by fake input"},
    {"gnome-shell",
     "hot key by the desktop portal, copying by Mutter's interface for remote desktops"},
};

constexpr const char* kSway = "hot key by bindings over SWAYSOCK, copying by a virtual keyboard";
constexpr const char* kPress =
    "no hot key for programs; bind a key to the command seldial-uc press in its configuration";

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

}  // namespace seldial
