#include "platform/wayland/FocusedToplevel.h"

#include <algorithm>
#include <list>
#include <utility>

#include "wlr-foreign-toplevel-management-unstable-v1-client.h"

namespace seldial::platform::wayland {
namespace {

struct Toplevel {
  zwlr_foreign_toplevel_handle_v1* handle;
  std::string applicationId;
  bool active = false;
};

using Toplevels = std::list<Toplevel>;  ///< its elements keep their addresses

Toplevel& self(void* data) {
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
    [](void* data, Handle* /*handle*/, const char* id) { self(data).applicationId = id; },
    [](void* /*data*/, Handle* /*handle*/, wl_output* /*output*/) {},
    [](void* /*data*/, Handle* /*handle*/, wl_output* /*output*/) {},
    [](void* data, Handle* /*handle*/, wl_array* states) { self(data).active = isActive(*states); },
    [](void* /*data*/, Handle* /*handle*/) {},
    [](void* data, Handle* /*handle*/) { self(data).active = false; },
    [](void* /*data*/, Handle* /*handle*/, Handle* /*parent*/) {}};

const zwlr_foreign_toplevel_manager_v1_listener kManagerListener{
    [](void* toplevels, zwlr_foreign_toplevel_manager_v1* /*manager*/, Handle* handle) {
      auto& toplevel = static_cast<Toplevels*>(toplevels)->emplace_back(Toplevel{handle, {}});
      zwlr_foreign_toplevel_handle_v1_add_listener(handle, &kHandleListener, &toplevel);
    },
    [](void* /*toplevels*/, zwlr_foreign_toplevel_manager_v1* /*manager*/) {}};

}  // namespace

std::vector<std::string> activeApplications(Display& display) {
  const Owned<zwlr_foreign_toplevel_manager_v1> manager(display.bindToplevels());
  if (!manager) return {};
  Toplevels toplevels;
  zwlr_foreign_toplevel_manager_v1_add_listener(manager.get(), &kManagerListener, &toplevels);
  display.synchronise();
  zwlr_foreign_toplevel_manager_v1_stop(manager.get());
  display.synchronise();  // no handle comes after this
  std::vector<std::string> active;
  for (auto& toplevel : toplevels) {
    if (toplevel.active) active.push_back(std::move(toplevel.applicationId));
    zwlr_foreign_toplevel_handle_v1_destroy(toplevel.handle);
  }
  return active;
}

}  // namespace seldial::platform::wayland
