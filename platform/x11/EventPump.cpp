#include "platform/x11/EventPump.h"

#include <poll.h>

#include <algorithm>
#include <utility>

#include "platform/Output.h"

namespace seldial::platform::x11 {

EventPump::EventPump(Connection& connection, linux_port::MainLoop& loop,
                     std::function<void()> connectionLost)
    : connection_(connection), loop_(loop), connectionLost_(std::move(connectionLost)) {
  loop_.watch(*this);
}

EventPump::~EventPump() {
  stopWatching();
}

void EventPump::stopWatching() {
  if (std::exchange(watched_, false)) loop_.unwatch(*this);
}

void EventPump::remove(EventHandler& handler) {
  handlers_.erase(std::remove(handlers_.begin(), handlers_.end(), &handler), handlers_.end());
}

int EventPump::descriptor() const {
  return xcb_get_file_descriptor(connection_.xcb());
}

void EventPump::readable() {
  serve();
  reportLoss();
}

// XCB also reads while it sends. Events that it has read then must not wait for the next
// readable().
void EventPump::willWait() {
  do {
    for (auto* const handler : handlers_) handler->idle();
    xcb_flush(connection_.xcb());
  } while (handleRead());
  reportLoss();
}

bool EventPump::readableWhileBlocked() {
  serve();
  return !connection_.lost();
}

void EventPump::serve() {
  do {
    handleArrived();
    xcb_flush(connection_.xcb());
  } while (handleRead());
}

void EventPump::handleArrived() {
  while (const auto event = freed(xcb_poll_for_event(connection_.xcb()))) handle(*event);
}

/// Handles the events that XCB has already read. Returns whether there were any.
bool EventPump::handleRead() {
  bool any = false;
  while (const auto event = freed(xcb_poll_for_queued_event(connection_.xcb()))) {
    handle(*event);
    any = true;
  }
  return any;
}

bool EventPump::serveUntil(Clock::time_point deadline, const std::function<bool()>& done) {
  for (;;) {
    serve();
    if (done()) return true;
    const auto left = deadline - Clock::now();
    if (connection_.lost() || loop_.interrupted() || left.count() <= 0) return false;
    // Events may have been read together with the replies for which `done` waited.
    if (!handleRead()) waitForInput(left);
  }
}

void EventPump::waitForInput(Clock::duration limit) const {
  pollfd watched[] = {{descriptor(), POLLIN, 0}, {loop_.interruption(), POLLIN, 0}};
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(limit);
  const timespec time{seconds.count(), std::chrono::nanoseconds(limit - seconds).count()};
  ppoll(watched, 2, &time, nullptr);
}

void EventPump::handle(const xcb_generic_event_t& event) {
  // The error of an unchecked request: a window of another client no longer exists. Harmless.
  if (kindOf(event) == 0) return;
  for (auto* const handler : handlers_) {
    if (handler->handle(event)) return;
  }
}

void EventPump::reportLoss() {
  if (!connection_.lost() || !watched_) return;
  stopWatching();
  printError("seldial: the connection to the X server is lost");
  connectionLost_();
}

}  // namespace seldial::platform::x11
