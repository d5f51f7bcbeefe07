// A private desktop for window tests: one X server, one window manager, one application, the X11
// port and a user's keyboard, shared by all tests of a process.
#pragma once

#include <QApplication>
#include <QtTest/QTest>
#include <memory>

#include "platform/qt/Desktop.h"
#include "tests/support/Waiting.h"
#include "tests/support/desktop/Keyboard.h"
#include "tests/support/desktop/Keys.h"
#include "tests/support/desktop/Windows.h"
#include "tests/support/desktop/XServer.h"

namespace seldial::tests {

/// Serves events until `condition` holds and the pending requests have been sent; false after the
/// time limit.
template <class Condition>
[[nodiscard]] bool becomesTrue(const Condition& condition) {
  const bool holds =
      QTest::qWaitFor(condition, static_cast<int>(std::chrono::milliseconds(kTimeLimit).count()));
  QCoreApplication::processEvents();
  return holds;
}

/// Created by the environment of the test program before the first test, destroyed after the last.
class QtDesktop {
 public:
  QtDesktop();
  ~QtDesktop();
  QtDesktop(const QtDesktop&) = delete;
  QtDesktop& operator=(const QtDesktop&) = delete;

  /// The desktop of this process.
  static QtDesktop& shared();

  [[nodiscard]] platform::qt::Desktop& ports() { return *ports_; }

  const XServer server{{"-screen", "0", "1600x1200x24"}};
  const Windows windows{server.display()};

 private:
  const WindowManager manager_{server.display()};
  std::unique_ptr<platform::qt::Desktop> ports_;
  std::unique_ptr<QApplication> application_;
  std::unique_ptr<QObject> served_;

 public:
  Keyboard keyboard{server.display()};
};

/// Counts key presses and releases in a widget, without auto-repeat.
class KeyCounter final : public QObject {
 public:
  explicit KeyCounter(QWidget& widget) { widget.installEventFilter(this); }
  [[nodiscard]] int presses() const { return presses_; }
  [[nodiscard]] int releases() const { return releases_; }
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  int presses_ = 0;
  int releases_ = 0;
};

/// Shows the window and waits until the user can type into it.
[[nodiscard]] bool activate(QWidget& window);

/// Presses the keys in that order and releases them in reverse order.
void press(const std::vector<std::uint8_t>& keys);

}  // namespace seldial::tests
