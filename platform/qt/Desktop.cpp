#include "platform/qt/Desktop.h"

#include <QAbstractEventDispatcher>
#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <QSocketNotifier>
#include <utility>

#include "platform/linux/MainLoop.h"
#include "platform/x11/Desktop.h"

namespace seldial::platform::qt {

namespace {

/// Hides from Qt that a window has lost the keyboard to a grab: while a hot key of this program is
/// held, Qt would consider the window inactive.
class GrabFocusFilter final : public QAbstractNativeEventFilter {
 public:
  GrabFocusFilter() { QCoreApplication::instance()->installNativeEventFilter(this); }
  ~GrabFocusFilter() override { QCoreApplication::instance()->removeNativeEventFilter(this); }
  Q_DISABLE_COPY_MOVE(GrabFocusFilter)

  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/) override {
    return eventType == "xcb_generic_event_t" && x11::isFocusChangeOfGrab(message);
  }
};

class ServedLoop final : public QObject {
 public:
  explicit ServedLoop(linux_port::MainLoop& loop)
      : notifier_(loop.descriptor(), QSocketNotifier::Read) {
    const auto serve = [&loop] { loop.serve(); };
    QObject::connect(&notifier_, &QSocketNotifier::activated, this, serve);
    // Calls to the ports may have left requests to send before the loop waits.
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock,
                     this, serve);
  }

 private:
  QSocketNotifier notifier_;
  const GrabFocusFilter filter_;
};

class ConnectedDesktop final : public Desktop {
 public:
  explicit ConnectedDesktop(std::function<void()> connectionLost)
      : session_(x11::connect(loop_, std::move(connectionLost))) {}

  [[nodiscard]] bool isConnected() const { return session_ != nullptr; }
  [[nodiscard]] std::shared_ptr<HotKeyEvents> hotKeyEvents() override {
    return x11::hotKeyEvents(session_);
  }
  [[nodiscard]] std::shared_ptr<x11::Session> session() override { return session_; }

  [[nodiscard]] KeyboardPorts keyboard() override {
    return {layout_, x11::recordingKeyboard(session_)};
  }

  [[nodiscard]] std::unique_ptr<QObject> serve() override {
    return std::make_unique<ServedLoop>(*loop_);
  }

 private:
  const std::shared_ptr<linux_port::MainLoop> loop_ = std::make_shared<linux_port::MainLoop>();
  const std::shared_ptr<x11::Session> session_;
  const std::shared_ptr<KeyboardLayout> layout_ = makeSystemKeyboardLayout();
};

}  // namespace

std::unique_ptr<Desktop> Desktop::connect(std::function<void()> connectionLost) {
  auto desktop = std::make_unique<ConnectedDesktop>(std::move(connectionLost));
  if (!desktop->isConnected()) return nullptr;
  return desktop;
}

}  // namespace seldial::platform::qt
