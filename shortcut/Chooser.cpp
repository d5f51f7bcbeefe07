// seldial-choose: asks which of the numbers on standard input, one a line, is to be called, and
// prints its position, from 0 on. Exit status: 0 when one was chosen, 1 when the window was
// cancelled, 2 when there are none. The numbers are not arguments, because every user can read
// those.
#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QStringList>
#include <QVBoxLayout>
#include <algorithm>
#include <cstdio>
#include <iostream>
#include <string>

namespace seldial {
namespace {

constexpr int kMargin = 20;
constexpr int kSpacing = 12;
constexpr int kMostRows = 10;
constexpr int kColumns = 28;

/// A window in which the user chooses the number to call, or confirms the only one. Return calls,
/// Escape cancels. Main thread only.
class NumberChooser : public QDialog {
 public:
  /// `numbers` is not empty.
  explicit NumberChooser(const QStringList& numbers);

  /// The position of the chosen number, once the dialog is accepted.
  [[nodiscard]] int chosen() const;

 private:
  QListWidget* list_;
};

NumberChooser::NumberChooser(const QStringList& numbers) : list_(new QListWidget(this)) {
  setWindowTitle(QStringLiteral("Call"));
  const QString question = numbers.size() > 1 ? QStringLiteral("&Which number do you want to call?")
                                              : QStringLiteral("&Do you want to call this number?");
  auto* const label = new QLabel(question, this);
  label->setBuddy(list_);
  list_->setObjectName(QStringLiteral("numbers"));
  list_->setAccessibleName(QStringLiteral("Numbers"));
  list_->addItems(numbers);
  list_->setCurrentRow(0);
  const int rows = std::min(static_cast<int>(numbers.size()), kMostRows);
  list_->setFixedHeight(rows * list_->sizeHintForRow(0) + 2 * list_->frameWidth());
  list_->setMinimumWidth(kColumns * list_->fontMetrics().averageCharWidth());
  auto* const buttons = new QDialogButtonBox(this);
  auto* const call = buttons->addButton(QStringLiteral("&Call"), QDialogButtonBox::AcceptRole);
  buttons->addButton(QStringLiteral("Ca&ncel"), QDialogButtonBox::RejectRole);
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

}  // namespace
}  // namespace seldial

int main(int argc, char* argv[]) {
  QStringList numbers;
  for (std::string line; std::getline(std::cin, line);) numbers << QString::fromStdString(line);
  if (numbers.isEmpty()) {
    std::fputs("seldial-choose: there are no numbers on standard input\n", stderr);
    return 2;
  }
  const QApplication application(argc, argv);
  seldial::NumberChooser chooser(numbers);
  if (chooser.exec() != QDialog::Accepted) return 1;
  std::printf("%d\n", chooser.chosen());
  return 0;
}
