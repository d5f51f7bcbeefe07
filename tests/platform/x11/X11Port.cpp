#include "tests/platform/x11/X11Port.h"

#include <cstdlib>
#include <stdexcept>
#include <utility>

#include "tests/support/Waiting.h"

namespace seldial::platform::x11 {

X11Port::X11Port(const std::string& display) {
  setenv("DISPLAY", display.c_str(), 1);
  std::promise<void> ready;
  thread_ = std::thread([this, &ready] { run(ready); });
  ready.get_future().wait();
}

X11Port::~X11Port() {
  loop_->async([this] { loop_->quit(); });
  thread_.join();
}

void X11Port::run(std::promise<void>& ready) {
  loop_ = std::make_shared<linux_port::MainLoop>();
  session_ = connect(loop_, [this] {
    const std::lock_guard lock(mutex_);
    ++connectionsLost_;
    changed_.notify_all();
  });
  if (session_) {
    hotKeys_ = hotKeyEvents(session_);
    clipboard_ = makeClipboard(session_);
    hotKeys_->installReleasedHandler([this](const HotKeyReleased& event) { released(event); });
  }
  ready.set_value();
  loop_->run();
  clipboard_.reset();
  hotKeys_.reset();
  session_.reset();
}

void X11Port::released(const HotKeyReleased& event) {
  std::optional<std::chrono::milliseconds> delay;
  {
    const std::lock_guard lock(mutex_);
    releases_.push_back(event);
    changed_.notify_all();
    delay = delay_;
  }
  if (!delay) return;
  auto text = dial(*delay);
  const std::lock_guard lock(mutex_);
  dialled_.push_back(std::move(text));
  changed_.notify_all();
}

std::optional<std::string> X11Port::dial(std::chrono::milliseconds delay) {
  clipboard_->clear();
  (void)clipboard_->copySelection();
  std::function<void()> blocking;
  {
    const std::lock_guard lock(mutex_);
    blocking = blocking_;
  }
  blocking();
  loop_->block(delay);
  return clipboard_->text();
}

std::optional<HotKeyRef> X11Port::registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                 std::uint32_t id) {
  return call([=, this] { return hotKeys_->registerHotKey(keyCode, modifiers, {0, id}); });
}

void X11Port::unregisterHotKey(HotKeyRef ref) {
  call([=, this] { hotKeys_->unregisterHotKey(ref); });
}

void X11Port::dialOnRelease(std::chrono::milliseconds delay) {
  const std::lock_guard lock(mutex_);
  delay_ = delay;
}

void X11Port::whenBlocking(std::function<void()> blocked) {
  const std::lock_guard lock(mutex_);
  blocking_ = std::move(blocked);
}

void X11Port::clear() {
  call([this] { clipboard_->clear(); });
}

std::optional<std::string> X11Port::text() {
  return call([this] { return clipboard_->text(); });
}

// Registering takes a round trip, and events come before the reply; what they cause is on the
// queue before the second task.
void X11Port::settle() {
  const std::uint32_t unused = 90;  // F20
  const auto ref = registerHotKey(unused, 0);
  if (ref) unregisterHotKey(*ref);
  call([] {});
}

std::vector<HotKeyReleased> X11Port::releases() const {
  const std::lock_guard lock(mutex_);
  return releases_;
}

std::vector<std::optional<std::string>> X11Port::dialled() const {
  const std::lock_guard lock(mutex_);
  return dialled_;
}

int X11Port::connectionsLost() const {
  const std::lock_guard lock(mutex_);
  return connectionsLost_;
}

void X11Port::waitForReleases(std::size_t count) const {
  waitFor([&] { return releases_.size() >= count; }, "release of the hot key");
}

void X11Port::waitForDials(std::size_t count) const {
  waitFor([&] { return dialled_.size() >= count; }, "dial");
}

void X11Port::waitForLoss() const {
  waitFor([&] { return connectionsLost_ > 0; }, "loss of the connection");
}

void X11Port::waitFor(const std::function<bool()>& condition, const char* what) const {
  std::unique_lock lock(mutex_);
  if (!changed_.wait_for(lock, tests::kTimeLimit, condition)) {
    throw std::runtime_error(std::string("no ") + what + " in time");
  }
}

}  // namespace seldial::platform::x11
