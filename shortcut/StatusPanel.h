#pragma once

#include <QWidget>

class QLabel;

namespace seldial {

/// A panel with a headline and a sentence. It is lit or shows a warning in the colours of the
/// palette. Main thread only.
class StatusPanel : public QWidget {
 public:
  enum class Kind { kPlain, kLit, kWarning };

  explicit StatusPanel(QWidget* parent = nullptr);

  /// Shows the texts. A lit panel and each new warning are announced to assistive technology.
  void tell(Kind kind, const QString& headline, const QString& detail);

  [[nodiscard]] Kind kind() const { return kind_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void colourTexts();
  void announce();
  void keepTextsOffSign();
  void makeRoom();

  Kind kind_ = Kind::kPlain;
  QLabel* headline_;
  QLabel* detail_;
};

}  // namespace seldial
