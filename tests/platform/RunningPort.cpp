#include "tests/platform/RunningPort.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>

#include "tests/support/Waiting.h"

namespace seldial::platform {

void RunningPort::start(Connect connect) {
  std::promise<void> ready;
  const auto isReady = ready.get_future();
  thread_ = std::thread([this, connect = std::move(connect), ready = std::move(ready)]() mutable {
    run(connect, std::move(ready));
  });
  isReady.wait();
}

void RunningPort::end() {
  loop_->async([this] { loop_->quit(); });
  thread_.join();
}

void RunningPort::run(const Connect& connect, std::promise<void> ready) {
  loop_ = std::make_shared<linux_port::MainLoop>();
  ports_ = connect(loop_, [this] { lost(); });
  if (ports_.hotKeyEvents) {
    ports_.hotKeyEvents->installReleasedHandler(
        [this](const HotKeyReleased& event) { released(event); });
  }
  ready.set_value();
  loop_->run();
  ports_.disconnect();
  ports_.clipboard.reset();
  ports_ = {};
}

void RunningPort::lost() {
  const std::lock_guard lock(mutex_);
  ++connectionsLost_;
  changed_.notify_all();
}

void RunningPort::released(const HotKeyReleased& event) {
  std::function<void()> wait;
  {
    const std::lock_guard lock(mutex_);
    releases_.push_back(event);
    changed_.notify_all();
    wait = wait_;
  }
  if (!wait) return;
  auto text = dial(wait);
  const std::lock_guard lock(mutex_);
  dialled_.push_back(std::move(text));
  changed_.notify_all();
}

std::optional<std::string> RunningPort::dial(const std::function<void()>& wait) {
  clipboard().clear();
  EXPECT_TRUE(clipboard().copySelection());
  wait();
  return clipboard().text();
}

std::optional<HotKeyRef> RunningPort::registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                     std::uint32_t id) {
  return call([=, this] { return hotKeys().registerHotKey(keyCode, modifiers, {0, id}); });
}

void RunningPort::unregisterHotKey(HotKeyRef ref) {
  call([=, this] { hotKeys().unregisterHotKey(ref); });
}

void RunningPort::dialOnRelease(std::function<void()> wait) {
  const std::lock_guard lock(mutex_);
  wait_ = std::move(wait);
}

std::vector<HotKeyReleased> RunningPort::releases() const {
  const std::lock_guard lock(mutex_);
  return releases_;
}

std::vector<std::optional<std::string>> RunningPort::dialled() const {
  const std::lock_guard lock(mutex_);
  return dialled_;
}

int RunningPort::connectionsLost() const {
  const std::lock_guard lock(mutex_);
  return connectionsLost_;
}

void RunningPort::waitForReleases(std::size_t count) const {
  waitFor([&] { return releases_.size() >= count; }, "release of the hot key");
}

void RunningPort::waitForDials(std::size_t count) const {
  waitFor([&] { return dialled_.size() >= count; }, "dial");
}

void RunningPort::waitForLoss() const {
  waitFor([&] { return connectionsLost_ > 0; }, "loss of the connection");
}

void RunningPort::waitFor(const std::function<bool()>& condition, const char* what) const {
  std::unique_lock lock(mutex_);
  if (!changed_.wait_for(lock, tests::kTimeLimit, condition)) {
    throw std::runtime_error(std::string("no ") + what + " in time");
  }
}

}  // namespace seldial::platform
