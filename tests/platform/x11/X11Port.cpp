#include "tests/platform/x11/X11Port.h"

#include <cstdlib>
#include <utility>

namespace seldial::platform::x11 {

X11Port::X11Port(const std::string& display) {
  setenv("DISPLAY", display.c_str(), 1);
  start([this](const auto& loop, auto connectionLost) -> DesktopPorts {
    session_ = connect(loop, std::move(connectionLost));
    if (!session_) return {};
    return {hotKeyEvents(session_), makeClipboard(session_), [this] { session_.reset(); }};
  });
}

void X11Port::dialOnRelease(std::chrono::milliseconds delay) {
  RunningPort::dialOnRelease([this, delay] { block(delay); });
}

std::optional<std::string> X11Port::dial(std::chrono::milliseconds delay) {
  return RunningPort::dial([this, delay] { block(delay); });
}

void X11Port::block(std::chrono::milliseconds delay) {
  std::function<void()> blocking;
  {
    const std::lock_guard lock(mutex_);
    blocking = blocking_;
  }
  blocking();
  loop().block(delay);
}

void X11Port::whenBlocking(std::function<void()> blocked) {
  const std::lock_guard lock(mutex_);
  blocking_ = std::move(blocked);
}

void X11Port::clear() {
  call([this] { clipboard().clear(); });
}

std::optional<std::string> X11Port::text() {
  return call([this] { return clipboard().text(); });
}

// Registering takes a round trip, and events arrive before the reply; the tasks that they post are
// in the queue before the second task.
void X11Port::settle() {
  const std::uint32_t unused = 90;  // F20
  const auto ref = registerHotKey(unused, 0);
  if (ref) unregisterHotKey(*ref);
  call([] {});
}

}  // namespace seldial::platform::x11
