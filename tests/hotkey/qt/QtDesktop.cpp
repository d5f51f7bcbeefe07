#include "tests/hotkey/qt/QtDesktop.h"

#include <gtest/gtest.h>

#include <QKeyEvent>

#include "hotkey/QKHotKeyCenter.h"

namespace seldial::tests {
namespace {

std::unique_ptr<QtDesktop> theDesktop;

class Environment final : public testing::Environment {
 public:
  void SetUp() override { theDesktop = std::make_unique<QtDesktop>(); }
  void TearDown() override { theDesktop.reset(); }
};

[[maybe_unused]] auto* const environment = testing::AddGlobalTestEnvironment(new Environment);

}  // namespace

QtDesktop::QtDesktop() {
  qputenv("DISPLAY", QByteArray::fromStdString(server.display()));
  qputenv("QT_QPA_PLATFORM", "xcb");
  ports_ = platform::qt::Desktop::connect([] { ADD_FAILURE() << "the server is lost"; });
  QKHotKeyCenter::setHotKeyEvents(ports_->hotKeyEvents());
  static int count = 1;
  static char name[] = "test";
  static char* arguments[] = {name, nullptr};
  application_ = std::make_unique<QApplication>(count, arguments);
  served_ = ports_->serve();
}

QtDesktop::~QtDesktop() {
  served_.reset();
  application_.reset();
  QKHotKeyCenter::setHotKeyEvents(nullptr);
  ports_.reset();
}

QtDesktop& QtDesktop::shared() {
  return *theDesktop;
}

bool KeyCounter::eventFilter(QObject* /*watched*/, QEvent* event) {
  const bool press = event->type() == QEvent::KeyPress;
  const bool release = event->type() == QEvent::KeyRelease;
  const bool counts = (press || release) && !static_cast<QKeyEvent*>(event)->isAutoRepeat();
  if (counts) ++(press ? presses_ : releases_);
  return false;
}

bool activate(QWidget& window) {
  window.show();
  window.activateWindow();
  if (!becomesTrue([&window] { return window.isActiveWindow(); })) return false;
  QtDesktop::shared().windows.waitUntilActive(static_cast<xcb_window_t>(window.winId()));
  return true;
}

void press(const std::vector<std::uint8_t>& keys) {
  auto& keyboard = QtDesktop::shared().keyboard;
  keyboard.press(keys);
  keyboard.release({keys.rbegin(), keys.rend()});
}

}  // namespace seldial::tests
