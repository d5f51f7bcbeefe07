#include "platform/wayland/Display.h"

#include <poll.h>
#include <unistd.h>

#include <cstring>
#include <utility>

#include "kwin-fake-input-client.h"
#include "plasma-window-list-client.h"
#include "virtual-keyboard-unstable-v1-client.h"
#include "wlr-data-control-unstable-v1-client.h"
#include "wlr-foreign-toplevel-management-unstable-v1-client.h"

namespace seldial::platform::wayland {
namespace {

// Version 1 of everything is enough; version 2 of the older data control would report every change
// of the primary selection.
constexpr std::uint32_t kVersion = 1;

/// The data control of newer compositors. It is version 2 of the older one under another name, with
/// the same requests and events in the same order, so the code for that serves both.
const wl_interface kExtDataControl{"ext_data_control_manager_v1",
                                   1,
                                   zwlr_data_control_manager_v1_interface.method_count,
                                   zwlr_data_control_manager_v1_interface.methods,
                                   zwlr_data_control_manager_v1_interface.event_count,
                                   zwlr_data_control_manager_v1_interface.events};

const wl_registry_listener kRegistryListener{
    [](void* display, wl_registry* registry, std::uint32_t name, const char* interface,
       std::uint32_t version) {
      static_cast<Display*>(display)->globalAppeared(registry, name, interface, version);
    },
    [](void* /*display*/, wl_registry* /*registry*/, std::uint32_t /*name*/) {}};

const wl_callback_listener kSyncListener{
    [](void* done, wl_callback* /*callback*/, std::uint32_t /*serial*/) {
      *static_cast<bool*>(done) = true;
    }};

/// Version 4 added keys to KWin's fake input.
constexpr std::uint32_t kFakeInputVersion = 4;

/// Version 13 added the UUIDs of windows. A window that is requested by its number gets two objects
/// with one ID in KWin 6, which sends events to both, also when the ID is another object's.
constexpr std::uint32_t kPlasmaWindowsVersion = 13;

/// KWin offers this to every program; other compositors do not.
constexpr const char* kOnlyInKWin = "org_kde_plasma_shell";

/// A global as the compositor announces it.
struct Global {
  std::uint32_t name;
  const char* interface;
  std::uint32_t version;
};

/// Binds the global if it has the wanted interface and is the first that does.
template <class Proxy>
void bindFirst(Owned<Proxy>& proxy, const wl_interface& wanted, wl_registry* registry,
               const Global& global, std::uint32_t version = kVersion) {
  if (proxy || global.version < version || std::strcmp(global.interface, wanted.name) != 0) return;
  proxy.reset(static_cast<Proxy*>(wl_registry_bind(registry, global.name, &wanted, version)));
}

}  // namespace

Display::Display(int socket, linux_port::MainLoop& loop, std::function<void()> connectionLost)
    : loop_(loop),
      connectionLost_(std::move(connectionLost)),
      display_(wl_display_connect_to_fd(socket)) {
  if (display_ == nullptr) {
    close(socket);
    lost_ = true;
    return;
  }
  registry_.reset(wl_display_get_registry(display_));
  wl_registry_add_listener(registry_.get(), &kRegistryListener, this);
  loop_.watch(*this);
  watched_ = true;
  answered_ = synchronise(kConnectLimit);
}

Display::~Display() {
  if (watched_) loop_.unwatch(*this);
  plasmaWindows_.reset();
  fakeInput_.reset();
  extDataControl_.reset();
  wlrDataControl_.reset();
  virtualKeyboards_.reset();
  seat_.reset();
  registry_.reset();
  if (display_ == nullptr) return;
  wl_display_flush(display_);
  wl_display_disconnect(display_);
}

void Display::globalAppeared(wl_registry* registry, std::uint32_t name, const char* interface,
                             std::uint32_t version) {
  const Global global{name, interface, version};
  bindFirst(seat_, wl_seat_interface, registry, global);
  bindFirst(extDataControl_, kExtDataControl, registry, global);
  bindFirst(wlrDataControl_, zwlr_data_control_manager_v1_interface, registry, global);
  bindFirst(virtualKeyboards_, zwp_virtual_keyboard_manager_v1_interface, registry, global);
  bindFirst(fakeInput_, org_kde_kwin_fake_input_interface, registry, global, kFakeInputVersion);
  bindFirst(plasmaWindows_, org_kde_plasma_window_management_interface, registry, global,
            kPlasmaWindowsVersion);
  if (std::strcmp(interface, kOnlyInKWin) == 0) isKWin_ = true;
  if (std::strcmp(interface, zwlr_foreign_toplevel_manager_v1_interface.name) == 0) {
    toplevelsName_ = name;
  }
}

zwlr_foreign_toplevel_manager_v1* Display::bindToplevels() {
  if (lost_ || toplevelsName_ == 0) return nullptr;
  return static_cast<zwlr_foreign_toplevel_manager_v1*>(wl_registry_bind(
      registry_.get(), toplevelsName_, &zwlr_foreign_toplevel_manager_v1_interface, kVersion));
}

bool Display::synchronise(std::chrono::seconds limit) {
  if (lost_) return false;
  bool done = false;
  const auto callback = requestCallback();
  wl_callback_add_listener(callback.get(), &kSyncListener, &done);
  const auto deadline = Clock::now() + limit;
  for (auto now = Clock::now(); !done && !lost_ && now < deadline; now = Clock::now()) {
    serve(std::chrono::ceil<std::chrono::milliseconds>(deadline - now));
  }
  return done;
}

int Display::descriptor() const {
  return wl_display_get_fd(display_);
}

void Display::readable() {
  serve(std::chrono::milliseconds(0));
  if (!lost_ || !std::exchange(watched_, false)) return;
  loop_.unwatch(*this);
  connectionLost_();
}

void Display::flush() {
  if (!lost_) wl_display_flush(display_);
}

void Display::willWait() {
  if (!lost_ && check(wl_display_dispatch_pending(display_))) wl_display_flush(display_);
}

bool Display::readableWhileBlocked() {
  serve(std::chrono::milliseconds(0));
  return !lost_;
}

void Display::serve(std::chrono::milliseconds limit) {
  while (!lost_ && wl_display_prepare_read(display_) != 0) {
    const int handled = wl_display_dispatch_pending(display_);
    if (!check(handled) || handled > 0) return;
  }
  if (lost_) return;
  wl_display_flush(display_);
  pollfd socket{wl_display_get_fd(display_), POLLIN, 0};
  if (poll(&socket, 1, static_cast<int>(limit.count())) <= 0) {
    wl_display_cancel_read(display_);
    return;
  }
  if (check(wl_display_read_events(display_))) check(wl_display_dispatch_pending(display_));
}

/// Checks the result of a call. False if the connection is lost.
bool Display::check(int result) {
  if (result == -1) lost_ = true;
  return !lost_;
}

}  // namespace seldial::platform::wayland
