#include "tests/support/wayland/BareCompositor.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <stdexcept>

namespace seldial::tests {
namespace {

/// Nobody asks for devices that the seat does not have.
void bindSeat(wl_client* client, void* /*data*/, std::uint32_t version, std::uint32_t id) {
  auto* const seat = wl_resource_create(client, &wl_seat_interface, static_cast<int>(version), id);
  wl_resource_set_implementation(seat, nullptr, nullptr, nullptr);
  wl_seat_send_capabilities(seat, 0);
}

}  // namespace

BareCompositor::BareCompositor(const std::string& socketPath, Offer offer)
    : stop_(eventfd(0, EFD_CLOEXEC)) {
  if (wl_display_add_socket(display_, socketPath.c_str()) != 0) {
    throw std::runtime_error("no socket at " + socketPath);
  }
  if (offer == Offer::kSeat) wl_global_create(display_, &wl_seat_interface, 1, nullptr, bindSeat);
  stopped_ = wl_event_loop_add_fd(
      wl_display_get_event_loop(display_), stop_, WL_EVENT_READABLE,
      [](int /*descriptor*/, std::uint32_t /*events*/, void* display) {
        wl_display_terminate(static_cast<wl_display*>(display));
        return 0;
      },
      display_);
  thread_ = std::thread([this] { wl_display_run(display_); });
}

BareCompositor::~BareCompositor() {
  eventfd_write(stop_, 1);
  thread_.join();
  wl_event_source_remove(stopped_);
  wl_display_destroy_clients(display_);
  wl_display_destroy(display_);
  close(stop_);
}

}  // namespace seldial::tests
