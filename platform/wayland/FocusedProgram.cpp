#include "platform/wayland/FocusedProgram.h"

#include <algorithm>
#include <fstream>
#include <list>
#include <utility>

#include "plasma-window-list-client.h"
#include "wlr-foreign-toplevel-management-unstable-v1-client.h"

namespace seldial::platform::wayland {
namespace {

struct Toplevel {
  zwlr_foreign_toplevel_handle_v1* handle;
  std::string applicationId;
  bool active = false;
};

using Toplevels = std::list<Toplevel>;  ///< its elements keep their addresses

Toplevel& toplevel(void* data) {
  return *static_cast<Toplevel*>(data);
}

bool isActive(const wl_array& states) {
  const auto* const first = static_cast<const std::uint32_t*>(states.data);
  const auto* const last = first + states.size / sizeof *first;
  return std::find(first, last, ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_ACTIVATED) != last;
}

using Handle = zwlr_foreign_toplevel_handle_v1;

const zwlr_foreign_toplevel_handle_v1_listener kHandleListener{
    [](void* /*data*/, Handle* /*handle*/, const char* /*title*/) {},
    [](void* data, Handle* /*handle*/, const char* id) { toplevel(data).applicationId = id; },
    [](void* /*data*/, Handle* /*handle*/, wl_output* /*output*/) {},
    [](void* /*data*/, Handle* /*handle*/, wl_output* /*output*/) {},
    [](void* data, Handle* /*handle*/, wl_array* states) {
      toplevel(data).active = isActive(*states);
    },
    [](void* /*data*/, Handle* /*handle*/) {},
    [](void* data, Handle* /*handle*/) { toplevel(data).active = false; },
    [](void* /*data*/, Handle* /*handle*/, Handle* /*parent*/) {}};

const zwlr_foreign_toplevel_manager_v1_listener kToplevelsListener{
    [](void* toplevels, zwlr_foreign_toplevel_manager_v1* /*manager*/, Handle* handle) {
      auto& added = static_cast<Toplevels*>(toplevels)->emplace_back(Toplevel{handle, {}});
      zwlr_foreign_toplevel_handle_v1_add_listener(handle, &kHandleListener, &added);
    },
    [](void* /*toplevels*/, zwlr_foreign_toplevel_manager_v1* /*manager*/) {}};

using Manager = org_kde_plasma_window_management;
using Proxy = org_kde_plasma_window;

constexpr std::uint32_t kActive = 1;  ///< a bit of a window's state

struct Window {
  std::string uuid;
  Proxy* proxy = nullptr;
  std::string applicationId;
  std::uint32_t process = 0;
  bool active = false;
  bool gone = false;
};

Window& window(void* data) {
  return *static_cast<Window*>(data);
}

const org_kde_plasma_window_management_listener kManagerListener{
    [](void* /*data*/, Manager* /*manager*/, std::uint32_t /*state*/) {},
    [](void* /*data*/, Manager* /*manager*/, std::uint32_t /*id*/) {},
    [](void* /*data*/, Manager* /*manager*/, wl_array* /*ids*/) {},
    [](void* /*data*/, Manager* /*manager*/, const char* /*uuids*/) {},
    [](void* windows, Manager* /*manager*/, std::uint32_t /*id*/, const char* uuid) {
      static_cast<PlasmaWindows*>(windows)->appeared(uuid);
    }};

const org_kde_plasma_window_listener kWindowListener{
    [](void* /*data*/, Proxy* /*proxy*/, const char* /*title*/) {},
    [](void* data, Proxy* /*proxy*/, const char* id) { window(data).applicationId = id; },
    [](void* data, Proxy* /*proxy*/, std::uint32_t state) {
      window(data).active = (state & kActive) != 0;
    },
    [](void* /*data*/, Proxy* /*proxy*/, std::int32_t /*desktop*/) {},
    [](void* /*data*/, Proxy* /*proxy*/, const char* /*icon*/) {},
    [](void* data, Proxy* /*proxy*/) { window(data).gone = true; },
    [](void* /*data*/, Proxy* /*proxy*/) {},
    [](void* /*data*/, Proxy* /*proxy*/, Proxy* /*parent*/) {},
    [](void* /*data*/, Proxy* /*proxy*/, std::int32_t /*x*/, std::int32_t /*y*/,
       std::uint32_t /*width*/, std::uint32_t /*height*/) {},
    [](void* /*data*/, Proxy* /*proxy*/) {},
    [](void* data, Proxy* /*proxy*/, std::uint32_t process) { window(data).process = process; },
    [](void* /*data*/, Proxy* /*proxy*/, const char* /*desktop*/) {},
    [](void* /*data*/, Proxy* /*proxy*/, const char* /*desktop*/) {},
    [](void* /*data*/, Proxy* /*proxy*/, const char* /*service*/, const char* /*path*/) {},
    [](void* /*data*/, Proxy* /*proxy*/, const char* /*activity*/) {},
    [](void* /*data*/, Proxy* /*proxy*/, const char* /*activity*/) {},
    [](void* /*data*/, Proxy* /*proxy*/, const char* /*name*/) {}};

}  // namespace

std::string processName(std::uint32_t process) {
  std::string name;
  std::getline(std::ifstream("/proc/" + std::to_string(process) + "/comm"), name);
  return name;
}

std::vector<std::string> activeApplications(Display& display) {
  const Owned<zwlr_foreign_toplevel_manager_v1> manager(display.bindToplevels());
  if (!manager) return {};
  Toplevels toplevels;
  zwlr_foreign_toplevel_manager_v1_add_listener(manager.get(), &kToplevelsListener, &toplevels);
  display.synchronise();
  zwlr_foreign_toplevel_manager_v1_stop(manager.get());
  display.synchronise();  // no handle arrives after this
  std::vector<std::string> active;
  for (auto& one : toplevels) {
    if (one.active) active.push_back(std::move(one.applicationId));
    zwlr_foreign_toplevel_handle_v1_destroy(one.handle);
  }
  return active;
}

PlasmaWindows::PlasmaWindows(Display& display) : display_(display) {
  if (display.plasmaWindows() == nullptr) return;
  org_kde_plasma_window_management_add_listener(display.plasmaWindows(), &kManagerListener, this);
}

std::vector<std::string> PlasmaWindows::activeApplications() {
  display_.synchronise();
  std::list<Window> windows;  // its elements keep their addresses
  for (auto& uuid : std::exchange(uuids_, {})) {
    auto& added = windows.emplace_back();
    added.proxy =
        org_kde_plasma_window_management_get_window_by_uuid(display_.plasmaWindows(), uuid.c_str());
    added.uuid = std::move(uuid);
    org_kde_plasma_window_add_listener(added.proxy, &kWindowListener, &added);
  }
  display_.synchronise();
  std::vector<std::string> active;
  for (auto& one : windows) {
    if (!one.gone) uuids_.push_back(std::move(one.uuid));
    if (one.active && !one.gone) {
      active.push_back(std::move(one.applicationId));
      active.push_back(processName(one.process));
    }
    org_kde_plasma_window_destroy(one.proxy);
  }
  return active;
}

}  // namespace seldial::platform::wayland
