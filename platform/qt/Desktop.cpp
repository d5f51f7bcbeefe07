#include "platform/qt/Desktop.h"

#include <QAbstractEventDispatcher>
#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <QSocketNotifier>
#include <utility>

#include "platform/x11/Desktop.h"

namespace seldial::platform::qt {
namespace {

/// Hides focus changes that a keyboard grab causes from Qt: otherwise Qt would treat the window as
/// inactive while a hot key of this program is held.
class GrabFocusFilter final : public QAbstractNativeEventFilter {
 public:
  GrabFocusFilter() { QCoreApplication::instance()->installNativeEventFilter(this); }
  ~GrabFocusFilter() override { QCoreApplication::instance()->removeNativeEventFilter(this); }
  Q_DISABLE_COPY_MOVE(GrabFocusFilter)

  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/) override {
    return eventType == "xcb_generic_event_t" && x11::isFocusChangeOfGrab(message);
  }
};

/// Lets Qt's event loop serve the desktop.
class DesktopServer final : public QObject {
 public:
  explicit DesktopServer(ServedDesktop& desktop)
      : notifier_(desktop.descriptor(), QSocketNotifier::Read) {
    const auto dispatch = [&desktop] { desktop.dispatch(); };
    QObject::connect(&notifier_, &QSocketNotifier::activated, this, dispatch);
    // Calls to the ports may have left requests to send before the loop waits.
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock,
                     this, dispatch);
  }

 private:
  QSocketNotifier notifier_;
  const GrabFocusFilter filter_;
};

}  // namespace

std::unique_ptr<Desktop> Desktop::connect(std::function<void()> connectionLost) {
  auto served = ServedDesktop::connect(std::move(connectionLost));
  if (!served) return nullptr;
  return std::unique_ptr<Desktop>(new Desktop(std::move(served)));
}

std::unique_ptr<QObject> Desktop::serve() {
  return std::make_unique<DesktopServer>(*served_);
}

}  // namespace seldial::platform::qt
