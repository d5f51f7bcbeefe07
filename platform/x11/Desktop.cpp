#include "platform/x11/Desktop.h"

#include <utility>

#include "platform/Installed.h"
#include "platform/x11/CopyKeystroke.h"
#include "platform/x11/RecordedKeys.h"
#include "platform/x11/SelectionPasteboard.h"

namespace seldial::platform::x11 {
namespace {

/// Everything that shares the connection. The installed ports keep it alive.
struct Ports {
  Ports(std::unique_ptr<Connection> open, linux_port::MainLoop& loop,
        std::function<void()> connectionLost)
      : connection(std::move(open)),
        pump(*connection, loop, std::move(connectionLost)),
        keyboards(*connection, pump),
        hotKeys(*connection, pump, loop, keyboards),
        held(*connection, pump, keyboards, hotKeys),
        keystroke(*connection, keyboards, held, source),
        clipboard(*connection, pump),
        pasteboard(*connection, pump, clipboard, source),
        recordedKeys(keyboards) {}

  const std::unique_ptr<Connection> connection;
  EventPump pump;
  Keyboards keyboards;
  HotKeyGrabs hotKeys;
  HeldModifiers held;
  CopySource source;
  CopyKeystroke keystroke;
  ClipboardOwner clipboard;
  SelectionPasteboard pasteboard;
  RecordedKeys recordedKeys;
};

class ConnectedDesktop final : public Desktop {
 public:
  explicit ConnectedDesktop(std::shared_ptr<Ports> ports) : ports_(std::move(ports)) {
    installed<HotKeyEvents>() = std::shared_ptr<HotKeyEvents>(ports_, &ports_->hotKeys);
    installed<KeyboardEvents>() = std::shared_ptr<KeyboardEvents>(ports_, &ports_->keystroke);
    installed<Pasteboard>() = std::shared_ptr<Pasteboard>(ports_, &ports_->pasteboard);
    installed<RecordingKeyboard>() =
        std::shared_ptr<RecordingKeyboard>(ports_, &ports_->recordedKeys);
  }
  ~ConnectedDesktop() override {
    ports_->held.payDebts();
    ports_->pump.stop();
  }
  ConnectedDesktop(const ConnectedDesktop&) = delete;
  ConnectedDesktop& operator=(const ConnectedDesktop&) = delete;

 private:
  const std::shared_ptr<Ports> ports_;
};

}  // namespace

std::unique_ptr<Desktop> Desktop::connect(linux_port::MainLoop& loop,
                                          std::function<void()> connectionLost) {
  auto connection = Connection::open();
  if (!connection) return nullptr;
  return std::make_unique<ConnectedDesktop>(
      std::make_shared<Ports>(std::move(connection), loop, std::move(connectionLost)));
}

}  // namespace seldial::platform::x11
