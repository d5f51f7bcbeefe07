#include "shortcut/CopyTest.h"

#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>
#include <utility>

namespace seldial {
namespace {

constexpr int kMargin = 20;

}  // namespace

CopyTestWindow::CopyTestWindow(const std::string& text, std::function<void()> ready)
    : ready_(std::move(ready)) {
  setWindowTitle(tr("Seldial check"));
  auto* const line = new QLineEdit(QString::fromStdString(text), this);
  line->selectAll();
  line->setFocus();
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->addWidget(new QLabel(tr("Seldial tries to copy this text."), this));
  layout->addWidget(line);
}

void CopyTestWindow::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  activateWindow();
}

void CopyTestWindow::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() != QEvent::ActivationChange || !isActiveWindow() || !ready_) return;
  std::exchange(ready_, nullptr)();
}

}  // namespace seldial
