#include "shortcut/CopyTest.h"

#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>
#include <utility>

#include "platform/x11/Desktop.h"

namespace seldial {
namespace {

constexpr int kMargin = 20;

}  // namespace

CopyTestWindow::CopyTestWindow(const std::string& text, std::function<void()> typeShift,
                               std::function<void()> ready)
    : typeShift_(std::move(typeShift)), ready_(std::move(ready)) {
  setWindowTitle(tr("Seldial check"));
  auto* const line = new QLineEdit(QString::fromStdString(text), this);
  line->selectAll();
  line->setFocus();
  line->installEventFilter(this);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->addWidget(new QLabel(tr("Seldial tries to copy this text."), this));
  layout->addWidget(line);
  QCoreApplication::instance()->installNativeEventFilter(this);
}

CopyTestWindow::~CopyTestWindow() {
  QCoreApplication::instance()->removeNativeEventFilter(this);
}

void CopyTestWindow::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  activateWindow();
}

bool CopyTestWindow::nativeEventFilter(const QByteArray& eventType, void* message,
                                       qintptr* /*result*/) {
  const bool hasFocus = eventType == "xcb_generic_event_t" &&
                        platform::x11::isFocusIn(static_cast<std::uint32_t>(winId()), message);
  if (hasFocus) callOnce(typeShift_);
  return false;
}

bool CopyTestWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyRelease) callOnce(ready_);
  return QDialog::eventFilter(watched, event);
}

void CopyTestWindow::callOnce(std::function<void()>& step) {
  if (step) std::exchange(step, nullptr)();
}

}  // namespace seldial
