#include "tests/support/wayland/BareCompositor.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <stdexcept>
#include <utility>

namespace seldial::tests {
namespace {

/// Clients send no requests to a seat without devices.
void bindSeat(wl_client* client, void* /*data*/, std::uint32_t version, std::uint32_t id) {
  auto* const seat = wl_resource_create(client, &wl_seat_interface, static_cast<int>(version), id);
  wl_resource_set_implementation(seat, nullptr, nullptr, nullptr);
  wl_seat_send_capabilities(seat, 0);
}

}  // namespace

BareCompositor::BareCompositor(const std::string& socketPath, Offer offer,
                               const std::function<void(wl_display*)>& addGlobals)
    : wake_(eventfd(0, EFD_CLOEXEC)), done_(eventfd(0, EFD_CLOEXEC)) {
  if (wl_display_add_socket(display_, socketPath.c_str()) != 0) {
    throw std::runtime_error("no socket at " + socketPath);
  }
  if (offer == Offer::kSeat) wl_global_create(display_, &wl_seat_interface, 1, nullptr, bindSeat);
  if (addGlobals) addGlobals(display_);
  woken_ = wl_event_loop_add_fd(
      wl_display_get_event_loop(display_), wake_, WL_EVENT_READABLE,
      [](int wake, std::uint32_t /*events*/, void* self) {
        eventfd_t count = 0;
        eventfd_read(wake, &count);
        auto& compositor = *static_cast<BareCompositor*>(self);
        std::exchange(compositor.task_, nullptr)();
        wl_display_flush_clients(compositor.display_);
        eventfd_write(compositor.done_, 1);
        return 0;
      },
      this);
  thread_ = std::thread([this] { wl_display_run(display_); });
}

BareCompositor::~BareCompositor() {
  run([this] { wl_display_terminate(display_); });
  thread_.join();
  wl_event_source_remove(woken_);
  wl_display_destroy_clients(display_);
  wl_display_destroy(display_);
  close(wake_);
  close(done_);
}

void BareCompositor::run(std::function<void()> task) {
  task_ = std::move(task);
  eventfd_write(wake_, 1);
  eventfd_t count = 0;
  eventfd_read(done_, &count);
}

}  // namespace seldial::tests
