// What the hot key ports of Linux share: their registrations, and how a release reaches the
// handler.
#pragma once

#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "platform/HotKeyEvents.h"
#include "platform/Ports.h"

namespace seldial::platform::linux_port {

/// A port that keeps a list of its registrations, each with what the desktop needs to know of it.
/// Main thread only. Releases reach the handler through the main queue.
template <class Details>
class RegisteredHotKeys : public HotKeyEvents {
 public:
  RegisteredHotKeys(const RegisteredHotKeys&) = delete;
  RegisteredHotKeys& operator=(const RegisteredHotKeys&) = delete;

  void installReleasedHandler(ReleasedHandler handler) final { *handler_ = std::move(handler); }

 protected:
  struct Registration : Details {
    HotKeyRef ref = 0;
    HotKeyID hotKeyID;
  };

  /// The queue must outlive this object.
  explicit RegisteredHotKeys(MainQueue& queue) : queue_(queue) {}
  ~RegisteredHotKeys() override = default;

  /// A registration with a reference of its own, which is not in the list yet.
  Registration makeRegistration(HotKeyID hotKeyID, Details details) {
    return {std::move(details), ++lastRef_, hotKeyID};
  }

  /// Adds it to the list and returns its reference.
  HotKeyRef add(Registration registration) {
    registrations_.push_back(std::move(registration));
    return registrations_.back().ref;
  }

  /// Removes it from the list; nothing when it is not there.
  std::optional<Registration> take(HotKeyRef ref) {
    const auto found =
        std::find_if(registrations_.begin(), registrations_.end(),
                     [ref](const Registration& registration) { return registration.ref == ref; });
    if (found == registrations_.end()) return std::nullopt;
    std::optional<Registration> taken(std::move(*found));
    registrations_.erase(found);
    return taken;
  }

  /// Posts the release of a hot key to the handler.
  void postReleased(HotKeyID hotKeyID, const KeyEvent& event) {
    queue_.async([handler = handler_, released = HotKeyReleased{hotKeyID, event}] {
      if (*handler) (*handler)(released);
    });
  }

  /// The same for a desktop that tells no more of the event than that it happens now.
  void postReleased(HotKeyID hotKeyID) {
    KeyEvent event;
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    event.timestamp = std::chrono::duration<double>(now).count();
    postReleased(hotKeyID, event);
  }

  std::vector<Registration> registrations_;

 private:
  MainQueue& queue_;
  const std::shared_ptr<ReleasedHandler> handler_ = std::make_shared<ReleasedHandler>();
  HotKeyRef lastRef_ = 0;
};

}  // namespace seldial::platform::linux_port
