// Reads the events of the X connection and passes each to the port that handles it.
//
// Ports handle events at once, even while the application is busy, because other clients wait for
// their answers. Events for the application itself are posted to the main queue, so that they
// arrive in order and never interrupt it.
#pragma once

#include <chrono>
#include <functional>
#include <vector>

#include "platform/linux/MainLoop.h"
#include "platform/x11/Connection.h"

namespace seldial::platform::x11 {

/// Receives events.
class EventHandler {
 public:
  virtual ~EventHandler() = default;

  /// Returns true if it handled the event. It may send requests and wait for replies, but not for
  /// other events.
  virtual bool handle(const xcb_generic_event_t& event) = 0;

  /// Called when the main loop has nothing else to do, for work that can be postponed.
  virtual void idle() {}
};

/// Main thread only.
class EventPump final : public linux_port::EventSource {
 public:
  using Clock = std::chrono::steady_clock;

  /// The loop watches the connection for as long as this object lives, or until the connection is
  /// lost; then `connectionLost` is called, once, from the loop.
  EventPump(Connection& connection, linux_port::MainLoop& loop,
            std::function<void()> connectionLost);
  ~EventPump() override;
  EventPump(const EventPump&) = delete;
  EventPump& operator=(const EventPump&) = delete;

  /// Handlers are not owned. They are called in the order in which they were added.
  void add(EventHandler& handler) { handlers_.push_back(&handler); }
  void remove(EventHandler& handler);

  /// Handles events until `done` returns true. False when the deadline passes, the connection is
  /// lost or the loop is interrupted before that.
  bool serveUntil(Clock::time_point deadline, const std::function<bool()>& done);

  /// Handles the events that have arrived, without flushing requests.
  void handleArrived();

  [[nodiscard]] int descriptor() const override;
  void readable() override;
  void willWait() override;
  bool readableWhileBlocked() override;

 private:
  void serve();
  bool handleRead();
  void handle(const xcb_generic_event_t& event);
  void reportLoss();
  void stopWatching();
  void waitForInput(Clock::duration limit) const;

  Connection& connection_;
  linux_port::MainLoop& loop_;
  bool watched_ = true;
  std::function<void()> connectionLost_;
  std::vector<EventHandler*> handlers_;
};

}  // namespace seldial::platform::x11
