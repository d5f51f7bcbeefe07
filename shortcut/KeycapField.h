#pragma once

#include <QString>

#include "hotkey/qt/QKHotKeyTextField.h"

class QPainter;

namespace seldial {

/// A hot key field that shows its record as keycaps with the names that PC keyboards have: "Ctrl",
/// "Alt", "D". An empty one shows a hint. Its text remains the library's display string. Main
/// thread only.
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

}  // namespace seldial
