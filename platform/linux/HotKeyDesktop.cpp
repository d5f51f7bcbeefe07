// Connects programs of the hot key library to the desktop: through applicationMain(), which runs
// the main loop for them, or through a ServedDesktop in their own loop. They do not use the
// clipboard.
#include <utility>

#include "platform/Ports.h"
#include "platform/ServedDesktop.h"
#include "platform/linux/Application.h"
#include "platform/x11/Desktop.h"

namespace seldial::platform {
namespace {

DesktopPorts connectDesktop(const std::shared_ptr<linux_port::MainLoop>& loop,
                            std::function<void()> connectionLost) {
  if (const auto session = x11::connect(loop, std::move(connectionLost))) {
    return {x11::hotKeyEvents(session), nullptr};
  }
  return {linux_port::noDesktop().hotKeyEvents, nullptr};
}

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

int applicationMain(int argc, char* const argv[], const MakeApplicationDelegate& makeDelegate) {
  return linux_port::runApplication(argc, argv, makeDelegate, connectDesktop);
}

std::unique_ptr<ServedDesktop> ServedDesktop::connect(std::function<void()> connectionLost) {
  auto desktop = std::make_unique<ConnectedDesktop>(std::move(connectionLost));
  if (!desktop->isConnected()) return nullptr;
  return desktop;
}

}  // namespace seldial::platform
