#pragma once

#include <QWidget>

class QLabel;

namespace seldial {

/// A quiet panel with one thing to know: a headline, and below it a sentence. It stands out when
/// something lights up in it or goes wrong, by the palette's own colours. Main thread only.
class StatusPanel : public QWidget {
 public:
  enum class Kind { kPlain, kLit, kWarning };

  explicit StatusPanel(QWidget* parent = nullptr);

  /// Shows that. What is lit, and each new warning, is announced to assistive technology.
  void tell(Kind kind, const QString& headline, const QString& detail);

  [[nodiscard]] Kind kind() const { return kind_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void colourTexts();
  void announce();
  void makeRoom();

  Kind kind_ = Kind::kPlain;
  QLabel* headline_;
  QLabel* detail_;
};

}  // namespace seldial
