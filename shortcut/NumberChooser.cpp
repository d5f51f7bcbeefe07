#include "shortcut/NumberChooser.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

namespace seldial {
namespace {

constexpr int kMargin = 20;
constexpr int kSpacing = 12;
constexpr int kMaxRows = 10;
constexpr int kColumns = 28;

}  // namespace

NumberChooser::NumberChooser(const QStringList& numbers) : list_(new QListWidget(this)) {
  setWindowTitle(tr("Call"));
  const QString question = numbers.size() > 1 ? tr("&Which number do you want to call?")
                                              : tr("&Do you want to call this number?");
  auto* const label = new QLabel(question, this);
  label->setBuddy(list_);
  list_->setObjectName(QStringLiteral("numbers"));
  list_->setAccessibleName(tr("Numbers"));
  list_->setLayoutDirection(Qt::LeftToRight);  // as numbers are written everywhere
  list_->addItems(numbers);
  list_->setCurrentRow(0);
  const int rows = std::min(static_cast<int>(numbers.size()), kMaxRows);
  list_->setFixedHeight(rows * list_->sizeHintForRow(0) + 2 * list_->frameWidth());
  list_->setMinimumWidth(kColumns * list_->fontMetrics().averageCharWidth());
  auto* const buttons = new QDialogButtonBox(this);
  auto* const call = buttons->addButton(tr("&Call"), QDialogButtonBox::AcceptRole);
  buttons->addButton(tr("Ca&ncel"), QDialogButtonBox::RejectRole);
  call->setObjectName(QStringLiteral("call"));
  call->setDefault(true);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->setSpacing(kSpacing);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  layout->addWidget(label);
  layout->addWidget(list_);
  layout->addWidget(buttons);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(list_, &QListWidget::itemDoubleClicked, this, &QDialog::accept);
  list_->setFocus(Qt::OtherFocusReason);
}

int NumberChooser::chosen() const {
  return list_->currentRow();
}

}  // namespace seldial
