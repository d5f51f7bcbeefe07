#pragma once

#include <QAbstractNativeEventFilter>

namespace seldial {

/// Keeps from Qt that a window has lost the keyboard to a grab: Qt would take the window for
/// inactive while a hot key is held that the window itself has registered, and the window would
/// give it back before it is released. At work while it lives; made once there is an application.
class GrabFocusFilter final : public QAbstractNativeEventFilter {
 public:
  GrabFocusFilter();
  ~GrabFocusFilter() override;
  Q_DISABLE_COPY_MOVE(GrabFocusFilter)

  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
};

}  // namespace seldial
