// Another program on a compositor, with its own thread.
#pragma once

#include <wayland-client.h>

#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>

namespace seldial::tests {

/// Derived classes bind what they need with global(), in their constructor and before start().
class WaylandClient {
 public:
  explicit WaylandClient(const std::string& socketPath);
  WaylandClient(const WaylandClient&) = delete;
  WaylandClient& operator=(const WaylandClient&) = delete;

 protected:
  /// Disconnects, which destroys everything of this client in the compositor.
  ~WaylandClient();

  /// Binds a global of this interface. Throws std::runtime_error if there is none.
  void* global(const wl_interface& interface, std::uint32_t version = 1);

  /// Handles events on the thread from now on, under lock().
  void start();
  /// Ends the thread; derived classes call it first when they are destroyed.
  void stop();

  /// Returns once the compositor has executed every request so far. Not before start().
  void synchronise();

  /// Requests, and access to everything that event handlers change, need the lock.
  std::unique_lock<std::mutex> lock() const { return std::unique_lock(mutex_); }
  /// Waits until `condition`, which is called under the lock, holds; throws std::runtime_error
  /// with `what` after kTimeLimit.
  void waitFor(const char* what, const std::function<bool()>& condition) const;

  [[nodiscard]] wl_display* display() const { return display_; }

 private:
  void run();

  wl_display* display_;
  wl_registry* registry_ = nullptr;
  std::map<std::string, std::uint32_t> globals_;
  int stop_;  ///< an eventfd
  mutable std::mutex mutex_;
  mutable std::condition_variable changed_;
  std::thread thread_;
};

}  // namespace seldial::tests
