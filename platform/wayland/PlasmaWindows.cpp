#include "platform/wayland/PlasmaWindows.h"

#include <list>
#include <utility>

#include "plasma-window-list-client.h"

namespace seldial::platform::wayland {
namespace {

using Manager = org_kde_plasma_window_management;
using Proxy = org_kde_plasma_window;

constexpr std::uint32_t kActive = 1;  ///< a bit of a window's state

struct Window {
  std::uint32_t id = 0;
  Proxy* proxy = nullptr;
  std::string applicationId;
  bool active = false;
  bool gone = false;
};

Window& self(void* data) {
  return *static_cast<Window*>(data);
}

const org_kde_plasma_window_management_listener kManagerListener{
    [](void* /*data*/, Manager* /*manager*/, std::uint32_t /*state*/) {},
    [](void* windows, Manager* /*manager*/, std::uint32_t id) {
      static_cast<PlasmaWindows*>(windows)->appeared(id);
    }};

const org_kde_plasma_window_listener kWindowListener{
    [](void* /*data*/, Proxy* /*window*/, const char* /*title*/) {},
    [](void* data, Proxy* /*window*/, const char* id) { self(data).applicationId = id; },
    [](void* data, Proxy* /*window*/, std::uint32_t state) {
      self(data).active = (state & kActive) != 0;
    },
    [](void* /*data*/, Proxy* /*window*/, std::int32_t /*desktop*/) {},
    [](void* /*data*/, Proxy* /*window*/, const char* /*icon*/) {},
    [](void* data, Proxy* /*window*/) { self(data).gone = true; },
    [](void* /*data*/, Proxy* /*window*/) {},
    [](void* /*data*/, Proxy* /*window*/, Proxy* /*parent*/) {},
    [](void* /*data*/, Proxy* /*window*/, std::int32_t /*x*/, std::int32_t /*y*/,
       std::uint32_t /*width*/, std::uint32_t /*height*/) {},
    [](void* /*data*/, Proxy* /*window*/) {},
    [](void* /*data*/, Proxy* /*window*/, std::uint32_t /*process*/) {},
    [](void* /*data*/, Proxy* /*window*/, const char* /*desktop*/) {},
    [](void* /*data*/, Proxy* /*window*/, const char* /*desktop*/) {},
    [](void* /*data*/, Proxy* /*window*/, const char* /*service*/, const char* /*path*/) {},
    [](void* /*data*/, Proxy* /*window*/, const char* /*activity*/) {},
    [](void* /*data*/, Proxy* /*window*/, const char* /*activity*/) {},
    [](void* /*data*/, Proxy* /*window*/, const char* /*name*/) {}};

}  // namespace

PlasmaWindows::PlasmaWindows(Display& display) : display_(display) {
  if (display.plasmaWindows() == nullptr) return;
  org_kde_plasma_window_management_add_listener(display.plasmaWindows(), &kManagerListener, this);
}

std::vector<std::string> PlasmaWindows::activeApplications() {
  display_.synchronise();
  std::list<Window> windows;  // its elements keep their addresses
  for (const auto id : std::exchange(ids_, {})) {
    auto& window = windows.emplace_back();
    window.id = id;
    window.proxy = org_kde_plasma_window_management_get_window(display_.plasmaWindows(), id);
    org_kde_plasma_window_add_listener(window.proxy, &kWindowListener, &window);
  }
  display_.synchronise();
  std::vector<std::string> active;
  for (auto& window : windows) {
    if (!window.gone) ids_.push_back(window.id);
    if (window.active && !window.gone) active.push_back(std::move(window.applicationId));
    org_kde_plasma_window_destroy(window.proxy);
  }
  return active;
}

}  // namespace seldial::platform::wayland
