// The widgets of the shortcut window: the field with keycaps, and the panel below it.
#pragma once

#include <QString>
#include <QWidget>

#include "hotkey/qt/QKHotKeyTextField.h"

class QLabel;
class QPainter;

namespace seldial {

/// A hot key field that shows its record as keycaps with the names that PC keyboards have: "Ctrl",
/// "Alt", "D". An empty field shows a hint. The text of the field remains the library's display
/// string. Main thread only.
class KeycapField : public QKHotKeyTextField {
 public:
  explicit KeycapField(const platform::KeyboardPorts& keyboard, QWidget* parent);

  /// Shown while there is no record and none is being recorded.
  void setHint(const QString& hint);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void paintFrame(QPainter& painter) const;
  void paintKeycaps(QPainter& painter, const QStringList& names) const;
  void paintHint(QPainter& painter) const;

  const std::shared_ptr<platform::KeyboardLayout> layout_;
  QString hint_;
};

/// A panel with a headline and a sentence. It is lit or shows a warning in the colours of the
/// palette. Main thread only.
class StatusPanel : public QWidget {
 public:
  enum class Kind { kPlain, kLit, kWarning };

  explicit StatusPanel(QWidget* parent = nullptr);

  /// Shows the texts. A lit panel and each new warning are announced to assistive technology.
  void setStatus(Kind kind, const QString& headline, const QString& detail);

  [[nodiscard]] Kind kind() const { return kind_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void colourTexts();
  void announce();
  void setTextMargins();
  void reserveHeight();

  Kind kind_ = Kind::kPlain;
  QLabel* headline_;
  QLabel* detail_;
};

}  // namespace seldial
