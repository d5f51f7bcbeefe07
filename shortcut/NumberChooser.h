#pragma once

#include <QCoreApplication>
#include <QDialog>
#include <QStringList>

class QListWidget;

namespace seldial {

/// A window in which the user chooses the number to call, or confirms the only one. Return calls,
/// Escape cancels. Main thread only.
class NumberChooser : public QDialog {
  Q_DECLARE_TR_FUNCTIONS(NumberChooser)

 public:
  /// `numbers` must not be empty.
  explicit NumberChooser(const QStringList& numbers);

  /// The position of the chosen number, once the dialog is accepted.
  [[nodiscard]] int chosen() const;

 private:
  QListWidget* list_;
};

}  // namespace seldial
