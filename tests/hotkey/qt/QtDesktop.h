// A private desktop for the tests of windows: one X server, one window manager, one application and
// the X11 port, for all tests of a process; and a user's keyboard.
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

/// Waits, serving events, until `condition` holds and what was asked of the server then is under
/// way; false after a limit that only a failure reaches.
template <class Condition>
[[nodiscard]] bool comesTrue(const Condition& condition) {
  const bool holds =
      QTest::qWaitFor(condition, static_cast<int>(std::chrono::milliseconds(kTimeLimit).count()));
  QCoreApplication::processEvents();
  return holds;
}

/// Made by the environment of the test program before the first test, gone after the last.
class QtDesktop {
 public:
  QtDesktop();
  ~QtDesktop();
  QtDesktop(const QtDesktop&) = delete;
  QtDesktop& operator=(const QtDesktop&) = delete;

  /// The one of this process.
  static QtDesktop& shared();

  [[nodiscard]] platform::qt::Desktop& ports() { return *ports_; }

  const XServer server{{"-screen", "0", "1600x1200x24"}};

 private:
  const WindowManager manager_{server.display()};
  std::unique_ptr<platform::qt::Desktop> ports_;
  std::unique_ptr<QApplication> application_;
  std::unique_ptr<QObject> served_;

 public:
  Keyboard keyboard{server.display()};
};

/// Counts the keys that go down and up in a widget, but for those that only repeat.
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

/// Presses the keys in that order and releases them the other way round.
void press(const std::vector<std::uint8_t>& keys);

}  // namespace seldial::tests
