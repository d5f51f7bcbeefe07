// The connection to the compositor and its globals.
#pragma once

#include <wayland-client.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

#include "platform/linux/MainLoop.h"

struct org_kde_kwin_fake_input;
struct org_kde_plasma_window_management;
struct zwlr_data_control_manager_v1;
struct zwlr_foreign_toplevel_manager_v1;
struct zwp_virtual_keyboard_manager_v1;

namespace seldial::platform::wayland {

/// Destroys a proxy of the core protocol or of an extension.
struct DestroyProxy {
  template <class Proxy>
  void operator()(Proxy* proxy) const {
    wl_proxy_destroy(reinterpret_cast<wl_proxy*>(proxy));
  }
};

template <class Proxy>
using Owned = std::unique_ptr<Proxy, DestroyProxy>;

/// Main thread only. Once the connection is lost, requests are dropped and waits end at once.
class Display final : public linux_port::EventSource {
 public:
  using Clock = std::chrono::steady_clock;

  /// How long the compositor may take to answer before a request counts as failed.
  static constexpr std::chrono::seconds kTimeout{5};
  /// How long it may take to answer at startup; the X server gets the same time.
  static constexpr std::chrono::seconds kConnectLimit{10};

  /// Takes over a socket that is connected to a compositor. The loop watches it for as long as this
  /// object lives, or until the connection is lost; then `connectionLost` is called, once, from the
  /// loop.
  Display(int socket, linux_port::MainLoop& loop, std::function<void()> connectionLost);
  ~Display() override;
  Display(const Display&) = delete;
  Display& operator=(const Display&) = delete;

  [[nodiscard]] bool lost() const { return lost_; }
  /// Whether the compositor has announced its globals in time.
  [[nodiscard]] bool answered() const { return answered_; }

  // The globals of the compositor; null if not offered. Owned by this object.
  [[nodiscard]] wl_seat* seat() const { return seat_.get(); }  ///< the first one
  /// ext_data_control_manager_v1 where that is offered, else zwlr_data_control_manager_v1.
  [[nodiscard]] zwlr_data_control_manager_v1* dataControl() const {
    return extDataControl_ ? extDataControl_.get() : wlrDataControl_.get();
  }
  [[nodiscard]] zwp_virtual_keyboard_manager_v1* virtualKeyboards() const {
    return virtualKeyboards_.get();
  }

  /// Whether it is KWin.
  [[nodiscard]] bool isKWin() const { return isKWin_; }
  // The globals that KWin offers only to programs whose .desktop file requests them.
  [[nodiscard]] org_kde_kwin_fake_input* fakeInput() const { return fakeInput_.get(); }
  [[nodiscard]] org_kde_plasma_window_management* plasmaWindows() const {
    return plasmaWindows_.get();
  }

  /// The list of windows, which the compositor sends after each bind; null if it offers none.
  [[nodiscard]] zwlr_foreign_toplevel_manager_v1* bindToplevels();

  /// Its event arrives once the compositor has executed every request so far.
  [[nodiscard]] Owned<wl_callback> requestCallback() {
    return Owned<wl_callback>(wl_display_sync(display_));
  }

  /// Sends the requests so far. Handlers of events may call it.
  void flush();

  /// Returns once the compositor has executed every request so far and all events that it sent
  /// before have been handled. False if it does not answer in time or the connection is lost.
  bool synchronise(std::chrono::seconds limit = kTimeout);

  /// Handles the events that have arrived, or waits for some, at most for `limit`.
  void serve(std::chrono::milliseconds limit);

  [[nodiscard]] int descriptor() const override;
  void readable() override;
  void willWait() override;
  bool readableWhileBlocked() override;

  // Called by libwayland.
  void globalAppeared(wl_registry* registry, std::uint32_t name, const char* interface,
                      std::uint32_t version);

 private:
  bool check(int result);

  linux_port::MainLoop& loop_;
  std::function<void()> connectionLost_;
  wl_display* display_;
  bool watched_ = false;
  bool lost_ = false;
  bool answered_ = false;
  Owned<wl_registry> registry_;
  std::uint32_t toplevelsName_ = 0;  ///< of the global; 0 if there is none
  Owned<wl_seat> seat_;
  Owned<zwlr_data_control_manager_v1> extDataControl_;
  Owned<zwlr_data_control_manager_v1> wlrDataControl_;
  Owned<zwp_virtual_keyboard_manager_v1> virtualKeyboards_;
  bool isKWin_ = false;
  Owned<org_kde_kwin_fake_input> fakeInput_;
  Owned<org_kde_plasma_window_management> plasmaWindows_;
};

}  // namespace seldial::platform::wayland
