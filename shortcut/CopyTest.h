#pragma once

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <QDialog>
#include <functional>
#include <string>

namespace seldial {

/// A window with selected text, with which `seldial-uc check` tests whether Seldial can copy. One
/// key is typed there first: Qt reads the whole keyboard layout at the first key that a program
/// types, which takes long on a busy machine. Main thread only.
class CopyTestWindow : public QDialog, private QAbstractNativeEventFilter {
  Q_DECLARE_TR_FUNCTIONS(CopyTestWindow)

 public:
  /// Both are called once, from the event loop: `typeShift` when the window has the focus, to type
  /// the Shift key, and `ready` when that key has arrived.
  CopyTestWindow(const std::string& text, std::function<void()> typeShift,
                 std::function<void()> ready);
  ~CopyTestWindow() override;
  Q_DISABLE_COPY_MOVE(CopyTestWindow)

 protected:
  void showEvent(QShowEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

  /// Calls `step` and empties it, so that a later call does nothing.
  static void callOnce(std::function<void()>& step);

  std::function<void()> typeShift_;
  std::function<void()> ready_;
};

}  // namespace seldial
