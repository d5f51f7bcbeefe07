#include "platform/ServedDesktop.h"

#include <utility>

#include "platform/linux/MainLoop.h"
#include "platform/x11/Desktop.h"

namespace seldial::platform {
namespace {

class ConnectedDesktop final : public ServedDesktop {
 public:
  explicit ConnectedDesktop(std::function<void()> connectionLost)
      : session_(x11::connect(loop_, std::move(connectionLost))) {}

  [[nodiscard]] bool isConnected() const { return session_ != nullptr; }
  [[nodiscard]] std::shared_ptr<HotKeyEvents> hotKeyEvents() override {
    return x11::hotKeyEvents(session_);
  }
  [[nodiscard]] KeyboardPorts keyboard() override {
    return {layout_, x11::recordingKeyboard(session_)};
  }
  [[nodiscard]] int descriptor() const override { return loop_->descriptor(); }
  void dispatch() override { loop_->serve(); }

 private:
  const std::shared_ptr<linux_port::MainLoop> loop_ = std::make_shared<linux_port::MainLoop>();
  const std::shared_ptr<x11::Session> session_;
  const std::shared_ptr<KeyboardLayout> layout_ = makeSystemKeyboardLayout();
};

}  // namespace

std::unique_ptr<ServedDesktop> ServedDesktop::connect(std::function<void()> connectionLost) {
  auto desktop = std::make_unique<ConnectedDesktop>(std::move(connectionLost));
  if (!desktop->isConnected()) return nullptr;
  return desktop;
}

}  // namespace seldial::platform
