#include "tests/platform/wayland/WaylandPort.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <stdexcept>
#include <utility>

#include "platform/wayland/Desktop.h"
#include "tests/support/Waiting.h"

namespace seldial::platform::wayland {
namespace {

int connectTo(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  const int number = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (connect(number, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
    throw std::runtime_error("no compositor at " + path);
  }
  return number;
}

}  // namespace

WaylandPort::WaylandPort(const tests::Sway& sway, tests::Sway::Ipc ipc) : display_(sway.display()) {
  sway.enter(ipc);
  std::promise<void> ready;
  thread_ = std::thread([this, &ready] { run(ready); });
  ready.get_future().wait();
}

WaylandPort::~WaylandPort() {
  loop_->async([this] { loop_->quit(); });
  thread_.join();
}

void WaylandPort::run(std::promise<void>& ready) {
  loop_ = std::make_shared<linux_port::MainLoop>();
  ports_ = connect(connectTo(display_), loop_, [this] {
    const std::lock_guard lock(mutex_);
    ++connectionsLost_;
    changed_.notify_all();
  });
  ports_.hotKeyEvents->installReleasedHandler(
      [this](const HotKeyReleased& event) { released(event); });
  ready.set_value();
  loop_->run();
  ports_.disconnect();
  ports_ = {};
}

void WaylandPort::released(const HotKeyReleased& event) {
  std::function<void()> wait;
  {
    const std::lock_guard lock(mutex_);
    releases_.push_back(event.hotKeyID.id);
    changed_.notify_all();
    wait = wait_;
  }
  if (!wait) return;
  ports_.clipboard->clear();
  EXPECT_TRUE(ports_.clipboard->copySelection());
  wait();
  auto text = ports_.clipboard->text();
  const std::lock_guard lock(mutex_);
  dialled_.push_back(std::move(text));
  changed_.notify_all();
}

std::optional<HotKeyRef> WaylandPort::registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                     std::uint32_t id) {
  return call([=, this] { return hotKeys().registerHotKey(keyCode, modifiers, {0, id}); });
}

void WaylandPort::unregisterHotKey(HotKeyRef ref) {
  call([=, this] { hotKeys().unregisterHotKey(ref); });
}

void WaylandPort::dialOnRelease(std::function<void()> wait) {
  const std::lock_guard lock(mutex_);
  wait_ = std::move(wait);
}

std::vector<std::uint32_t> WaylandPort::releases() const {
  const std::lock_guard lock(mutex_);
  return releases_;
}

std::vector<std::optional<std::string>> WaylandPort::dialled() const {
  const std::lock_guard lock(mutex_);
  return dialled_;
}

int WaylandPort::connectionsLost() const {
  const std::lock_guard lock(mutex_);
  return connectionsLost_;
}

void WaylandPort::waitForReleases(std::size_t count) const {
  waitFor([&] { return releases_.size() >= count; }, "release of the hot key");
}

void WaylandPort::waitForDials(std::size_t count) const {
  waitFor([&] { return dialled_.size() >= count; }, "dial");
}

void WaylandPort::waitForLoss() const {
  waitFor([&] { return connectionsLost_ > 0; }, "loss of the connection");
}

void WaylandPort::waitFor(const std::function<bool()>& condition, const char* what) const {
  std::unique_lock lock(mutex_);
  if (!changed_.wait_for(lock, tests::kTimeLimit, condition)) {
    throw std::runtime_error(std::string("no ") + what + " in time");
  }
}

}  // namespace seldial::platform::wayland
