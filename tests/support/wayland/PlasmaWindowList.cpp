#include "tests/support/wayland/PlasmaWindowList.h"

#include "plasma-window-list-server.h"

namespace seldial::tests {
namespace {

// The names of variables in the generated header are those of these structures.
using WindowRequests = struct org_kde_plasma_window_interface;
using ManagerRequests = struct org_kde_plasma_window_management_interface;

constexpr int kVersion = 4;
constexpr std::uint32_t kActive = 1;

WindowRequests windowRequests() {
  WindowRequests requests{};
  requests.destroy = [](wl_client* /*client*/, wl_resource* window) {
    wl_resource_destroy(window);
  };
  return requests;
}

const WindowRequests kWindow = windowRequests();

constexpr ManagerRequests kManager{
    [](wl_client* /*client*/, wl_resource* /*manager*/, std::uint32_t /*state*/) {},
    [](wl_client* client, wl_resource* manager, std::uint32_t resource, std::uint32_t id) {
      auto* const window =
          wl_resource_create(client, &org_kde_plasma_window_interface, kVersion, resource);
      wl_resource_set_implementation(window, &kWindow, nullptr, nullptr);
      static_cast<PlasmaWindowList*>(wl_resource_get_user_data(manager))->describe(window, id);
    }};

}  // namespace

PlasmaWindowList::PlasmaWindowList(const std::string& socketPath, Version version)
    : version_(version),
      compositor_(socketPath, BareCompositor::Offer::kSeat, [this](auto* display) {
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
    if (manager_ != nullptr) org_kde_plasma_window_management_send_window(manager_, id);
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
    org_kde_plasma_window_management_send_window(manager_, number);
  }
}

void PlasmaWindowList::describe(wl_resource* window, std::uint32_t id) {
  const auto found = windows_.find(id);
  if (found != windows_.end()) {
    org_kde_plasma_window_send_app_id_changed(window, found->second.applicationId.c_str());
    if (found->second.process != 0) {
      org_kde_plasma_window_send_pid_changed(window, found->second.process);
    }
    org_kde_plasma_window_send_state_changed(window, id == active_ ? kActive : 0);
    org_kde_plasma_window_send_initial_state(window);
    if (version_ == Version::kFive) return;
  }
  org_kde_plasma_window_send_state_changed(window, 0);
  org_kde_plasma_window_send_initial_state(window);
  org_kde_plasma_window_send_unmapped(window);
}

}  // namespace seldial::tests
