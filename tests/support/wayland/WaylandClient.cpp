#include "tests/support/wayland/WaylandClient.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <stdexcept>

#include "tests/support/Waiting.h"

namespace seldial::tests {

WaylandClient::WaylandClient(const std::string& socketPath)
    : display_(wl_display_connect(socketPath.c_str())), stop_(eventfd(0, EFD_CLOEXEC)) {
  if (display_ == nullptr) throw std::runtime_error("no compositor at " + socketPath);
  registry_ = wl_display_get_registry(display_);
  static constexpr wl_registry_listener kListener{
      [](void* self, wl_registry* /*registry*/, std::uint32_t name, const char* interface,
         std::uint32_t /*version*/) {
        static_cast<WaylandClient*>(self)->globals_[interface] = name;
      },
      [](void* /*self*/, wl_registry* /*registry*/, std::uint32_t /*name*/) {}};
  wl_registry_add_listener(registry_, &kListener, this);
  wl_display_roundtrip(display_);
}

WaylandClient::~WaylandClient() {
  stop();
  wl_registry_destroy(registry_);
  wl_display_disconnect(display_);
  close(stop_);
}

void* WaylandClient::global(const wl_interface& interface, std::uint32_t version) {
  const auto found = globals_.find(interface.name);
  if (found == globals_.end()) throw std::runtime_error(std::string("no ") + interface.name);
  return wl_registry_bind(registry_, found->second, &interface, version);
}

void WaylandClient::start() {
  wl_display_flush(display_);
  thread_ = std::thread([this] { run(); });
}

void WaylandClient::stop() {
  if (!thread_.joinable()) return;
  eventfd_write(stop_, 1);
  thread_.join();
}

void WaylandClient::run() {
  for (;;) {
    {
      const auto locked = lock();
      while (wl_display_prepare_read(display_) != 0) wl_display_dispatch_pending(display_);
      wl_display_flush(display_);
    }
    pollfd descriptors[]{{wl_display_get_fd(display_), POLLIN, 0}, {stop_, POLLIN, 0}};
    poll(descriptors, 2, -1);
    const auto locked = lock();
    if (descriptors[1].revents != 0) return wl_display_cancel_read(display_);
    const bool alive =
        wl_display_read_events(display_) == 0 && wl_display_dispatch_pending(display_) >= 0;
    changed_.notify_all();
    if (!alive) return;
  }
}

void WaylandClient::synchronise() {
  bool done = false;
  wl_callback* callback = nullptr;
  static constexpr wl_callback_listener kListener{
      [](void* finished, wl_callback* /*callback*/, std::uint32_t /*serial*/) {
        *static_cast<bool*>(finished) = true;
      }};
  {
    const auto locked = lock();
    callback = wl_display_sync(display_);
    wl_callback_add_listener(callback, &kListener, &done);
    wl_display_flush(display_);
  }
  waitFor("answer of the compositor", [&] { return done; });
  const auto locked = lock();
  wl_callback_destroy(callback);
}

void WaylandClient::waitFor(const char* what, const std::function<bool()>& condition) const {
  auto locked = lock();
  if (!changed_.wait_for(locked, kTimeLimit, condition)) {
    throw std::runtime_error(std::string("no ") + what + " in time");
  }
}

}  // namespace seldial::tests
