// Code shared by the hot key ports on Linux: their registrations, and posting releases to the
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

/// A port that keeps a list of its registrations, each with details for the desktop. Main thread
/// only. Releases reach the handler through the main queue.
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

  /// A registration with a new reference, which is not in the list yet.
  Registration makeRegistration(HotKeyID hotKeyID, Details details) {
    return {std::move(details), ++lastRef_, hotKeyID};
  }

  /// Adds a registration to the list and returns its reference.
  HotKeyRef add(Registration registration) {
    registrations_.push_back(std::move(registration));
    return registrations_.back().ref;
  }

  /// Removes a registration from the list and returns it; nothing if it is not there.
  std::optional<Registration> remove(HotKeyRef ref) {
    const auto found =
        std::find_if(registrations_.begin(), registrations_.end(),
                     [ref](const Registration& registration) { return registration.ref == ref; });
    if (found == registrations_.end()) return std::nullopt;
    std::optional<Registration> removed(std::move(*found));
    registrations_.erase(found);
    return removed;
  }

  /// Posts the release of a hot key to the handler.
  void postReleased(HotKeyID hotKeyID, const KeyEvent& event) {
    queue_.async([handler = handler_, released = HotKeyReleased{hotKeyID, event}] {
      if (*handler) (*handler)(released);
    });
  }

  /// For a desktop that reports no details of the event; the time is the current time.
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
