#include "tests/support/wayland/PlasmaWindowList.h"

#include <algorithm>

#include "plasma-window-list-server.h"

namespace seldial::tests {
namespace {

// The generated header has variables with the same names as these structures.
using WindowRequests = struct org_kde_plasma_window_interface;
using ManagerRequests = struct org_kde_plasma_window_management_interface;

constexpr int kVersion = 13;
constexpr std::uint32_t kActive = 1;

WindowRequests windowRequests() {
  WindowRequests requests{};
  requests.destroy = [](wl_client* /*client*/, wl_resource* window) {
    wl_resource_destroy(window);
  };
  return requests;
}

const WindowRequests kWindow = windowRequests();

/// The UUID of the window with this number.
std::string uuidOf(std::uint32_t id) {
  return "window-" + std::to_string(id);
}

constexpr ManagerRequests kManager{
    [](wl_client* /*client*/, wl_resource* /*manager*/, std::uint32_t /*state*/) {},
    [](wl_client* /*client*/, wl_resource* manager, std::uint32_t /*resource*/,
       std::uint32_t /*id*/) {
      wl_resource_post_error(manager, 0, "a window is requested by its number");
    },
    [](wl_client* client, wl_resource* manager, std::uint32_t resource, const char* uuid) {
      auto* const window =
          wl_resource_create(client, &org_kde_plasma_window_interface, kVersion, resource);
      wl_resource_set_implementation(window, &kWindow, nullptr, nullptr);
      static_cast<PlasmaWindowList*>(wl_resource_get_user_data(manager))->describe(window, uuid);
    }};

}  // namespace

PlasmaWindowList::PlasmaWindowList(const std::string& socketPath)
    : compositor_(socketPath, BareCompositor::Offer::kSeat, [this](auto* display) {
        wl_global_create(
            display, &org_kde_plasma_window_management_interface, kVersion, this,
            [](wl_client* client, void* list, std::uint32_t /*version*/, std::uint32_t id) {
              static_cast<PlasmaWindowList*>(list)->bind(client, id);
            });
      }) {}

void PlasmaWindowList::open(std::uint32_t id, const std::string& applicationId,
                            std::uint32_t process) {
  compositor_.run([=, this] {
    windows_[id] = {applicationId, process};
    if (manager_ != nullptr)
      org_kde_plasma_window_management_send_window_with_uuid(manager_, id, uuidOf(id).c_str());
  });
}

void PlasmaWindowList::close(std::uint32_t id) {
  compositor_.run([=, this] { windows_.erase(id); });
}

void PlasmaWindowList::activate(std::uint32_t id) {
  compositor_.run([=, this] { active_ = id; });
}

void PlasmaWindowList::bind(wl_client* client, std::uint32_t id) {
  manager_ = wl_resource_create(client, &org_kde_plasma_window_management_interface, kVersion, id);
  wl_resource_set_implementation(manager_, &kManager, this, nullptr);
  for (const auto& [number, window] : windows_) {
    org_kde_plasma_window_management_send_window_with_uuid(manager_, number,
                                                           uuidOf(number).c_str());
  }
}

void PlasmaWindowList::describe(wl_resource* window, const std::string& uuid) {
  const auto found = std::find_if(windows_.begin(), windows_.end(),
                                  [&](const auto& one) { return uuidOf(one.first) == uuid; });
  const bool isThere = found != windows_.end();
  if (isThere) {
    org_kde_plasma_window_send_app_id_changed(window, found->second.applicationId.c_str());
    org_kde_plasma_window_send_pid_changed(window, found->second.process);
  }
  org_kde_plasma_window_send_state_changed(window,
                                           isThere && found->first == active_ ? kActive : 0);
  org_kde_plasma_window_send_initial_state(window);
  if (!isThere) org_kde_plasma_window_send_unmapped(window);
}

}  // namespace seldial::tests
