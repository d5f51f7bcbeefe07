// A clipboard manager for scripts/test-desktops. After each copy it takes over the clipboard with
// the same content. Usage: seldial_clipboard_manager DELAY_MS [refill]
//
// Like some managers, it ignores newer changes while it handles one, which takes DELAY_MS. With
// "refill" it puts the last content back if the clipboard is cleared or has no data.
#include <poll.h>
#include <unistd.h>
#include <wayland-client.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "wlr-data-control-unstable-v1-client.h"

namespace {

using Content = std::map<std::string, std::string>;  // the data of each type
constexpr const char* kOwnType = "application/x-test-manager";

wl_display* display;
wl_seat* seat;
zwlr_data_control_manager_v1* dataControl;
zwlr_data_control_device_v1* device;
std::map<zwlr_data_control_offer_v1*, Content> offers;
zwlr_data_control_offer_v1* changed;  // the clipboard that is not yet kept
bool cleared;                         // and not yet refilled
Content kept;
int delay;
bool refills;

std::string readAll(int pipe) {
  std::string data;
  char buffer[4096];
  pollfd readable{pipe, POLLIN, 0};
  while (poll(&readable, 1, 500) == 1) {
    const auto count = read(pipe, buffer, sizeof buffer);
    if (count <= 0) break;
    data.append(buffer, static_cast<std::size_t>(count));
  }
  close(pipe);
  return data;
}

void takeClipboard() {
  static constexpr zwlr_data_control_source_v1_listener kListener{
      [](void* /*data*/, zwlr_data_control_source_v1* /*source*/, const char* type, int pipe) {
        const auto& data = kept[type];
        if (write(pipe, data.data(), data.size()) < 0) std::exit(1);
        close(pipe);
      },
      [](void* /*data*/, zwlr_data_control_source_v1* source) {
        zwlr_data_control_source_v1_destroy(source);
      }};
  auto* const source = zwlr_data_control_manager_v1_create_data_source(dataControl);
  zwlr_data_control_source_v1_add_listener(source, &kListener, nullptr);
  for (const auto& [type, data] : kept) zwlr_data_control_source_v1_offer(source, type.c_str());
  zwlr_data_control_source_v1_offer(source, kOwnType);
  zwlr_data_control_device_v1_set_selection(device, source);
}

void keep(Content content, zwlr_data_control_offer_v1* offer) {
  for (auto& [type, data] : content) {
    int pipe[2];
    if (::pipe(pipe) != 0) std::exit(1);
    zwlr_data_control_offer_v1_receive(offer, type.c_str(), pipe[1]);
    wl_display_flush(display);
    close(pipe[1]);
    data = readAll(pipe[0]);
  }
  const bool isEmpty =
      std::all_of(content.begin(), content.end(), [](const auto& of) { return of.second.empty(); });
  if (!isEmpty || !refills) kept = std::move(content);
  poll(nullptr, 0, delay);
  takeClipboard();
}

const zwlr_data_control_offer_v1_listener kOfferListener{
    [](void* /*data*/, zwlr_data_control_offer_v1* offer, const char* type) {
      // GTK 3 never answers a request for this one, and after it often no other.
      if (std::string_view(type) != "SAVE_TARGETS") offers[offer][type];
    }};

const zwlr_data_control_device_v1_listener kDeviceListener{
    [](void* /*data*/, zwlr_data_control_device_v1* /*device*/, zwlr_data_control_offer_v1* offer) {
      offers[offer];
      zwlr_data_control_offer_v1_add_listener(offer, &kOfferListener, nullptr);
    },
    [](void* /*data*/, zwlr_data_control_device_v1* /*device*/, zwlr_data_control_offer_v1* offer) {
      changed = offer != nullptr && offers[offer].count(kOwnType) == 0 ? offer : nullptr;
      cleared = offer == nullptr;
    },
    [](void* /*data*/, zwlr_data_control_device_v1* /*device*/) { std::exit(1); },
    [](void* /*data*/, zwlr_data_control_device_v1* /*device*/,
       zwlr_data_control_offer_v1* /*offer*/) {}};

const wl_registry_listener kRegistryListener{
    [](void* /*data*/, wl_registry* registry, std::uint32_t name, const char* interface,
       std::uint32_t /*version*/) {
      const auto bind = [&](const wl_interface& wanted) {
        return wl_registry_bind(registry, name, &wanted, 1);
      };
      if (std::string_view(interface) == wl_seat_interface.name) {
        seat = static_cast<wl_seat*>(bind(wl_seat_interface));
      } else if (std::string_view(interface) == zwlr_data_control_manager_v1_interface.name) {
        dataControl = static_cast<zwlr_data_control_manager_v1*>(
            bind(zwlr_data_control_manager_v1_interface));
      }
    },
    [](void* /*data*/, wl_registry* /*registry*/, std::uint32_t /*name*/) {}};

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  delay = std::stoi(argv[1]);
  refills = argc > 2;
  display = wl_display_connect(nullptr);
  if (display == nullptr) return 1;
  wl_registry_add_listener(wl_display_get_registry(display), &kRegistryListener, nullptr);
  wl_display_roundtrip(display);
  if (seat == nullptr || dataControl == nullptr) return 1;
  device = zwlr_data_control_manager_v1_get_data_device(dataControl, seat);
  zwlr_data_control_device_v1_add_listener(device, &kDeviceListener, nullptr);
  while (wl_display_dispatch(display) != -1) {
    if (auto* const offer = std::exchange(changed, nullptr)) keep(offers[offer], offer);
    if (std::exchange(cleared, false) && refills && !kept.empty()) takeClipboard();
  }
}
