// Reads the events of the X connection and hands each to the port that it is meant for.
//
// A port reacts to an event at once, whatever the program is doing: other clients wait for our
// answers. What the application itself has to hear is posted to the main queue, so it is heard in
// order and never in the middle of something else.
#pragma once

#include <chrono>
#include <functional>
#include <vector>

#include "platform/linux/MainLoop.h"
#include "platform/x11/Connection.h"

namespace seldial::platform::x11 {

/// A port as the receiver of events.
class EventHandler {
 public:
  virtual ~EventHandler() = default;

  /// True when the event was meant for this handler. It may send requests and wait for replies,
  /// but not for other events.
  virtual bool handle(const xcb_generic_event_t& event) = 0;

  /// The main loop has nothing else to do: the time for work that can wait until then.
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

  /// Handlers are not owned and are asked in the order in which they were added.
  void add(EventHandler& handler) { handlers_.push_back(&handler); }
  void remove(EventHandler& handler);

  /// Handles events until `done` says so: true. False when the deadline passes or the connection
  /// is lost first.
  bool serveUntil(Clock::time_point deadline, const std::function<bool()>& done);

  /// Handles the events that have arrived; sends nothing yet.
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
