#pragma once

#include <QLineEdit>
#include <memory>

#include "hotkey/QKHotKeyEditing.h"
#include "hotkey/qt/KeyRepeats.h"

namespace seldial {

/// A line edit that shows a hot key as glyphs; while it has the keyboard focus it is edited: each
/// combination that is pressed becomes its record, Return or Escape ends it and moves the focus on.
/// The record is not registered.
///
/// While it is edited, every key press goes to the editing and nowhere else. The keyboard is
/// grabbed, so that also a combination is recorded that the window manager or another program
/// holds; where the desktop refuses the grab, only those cannot be recorded. When the window loses
/// its activation the editing ends too, and does not begin again by itself when it comes back.
///
/// Keys are read by the installed platform::RecordingKeyboard; without one none is recorded.
/// Main thread only.
class QKHotKeyTextField : public QLineEdit {
  Q_OBJECT

 public:
  /// An empty field.
  explicit QKHotKeyTextField(QWidget* parent = nullptr);
  ~QKHotKeyTextField() override;
  Q_DISABLE_COPY_MOVE(QKHotKeyTextField)

  /// The shown record; null when there is none.
  [[nodiscard]] std::shared_ptr<QKHotKey> hotKey() const { return hotKey_; }
  /// Shows the record, upper-cased; null shows nothing. The object that is shown already changes
  /// nothing, and is not shown afresh.
  void setHotKey(const std::shared_ptr<QKHotKey>& hotKey);

  /// The shown text; not what one wants, as a line on standard error says.
  void setStringValue(const QString& string);
  /// The same for reading it.
  [[nodiscard]] QString stringValue() const;

  /// Whether a hot key is being recorded.
  [[nodiscard]] bool isEditing() const { return isEditing_; }

 Q_SIGNALS:
  /// The user recorded a hot key, or ended the editing by Return or Escape.
  void actionSent();
  /// The editing has begun or ended. When it has ended, nothing here keeps an earlier record alive.
  void editingChanged(bool isEditing);

 private:
  bool event(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

  class EditedField;

  void beginEditing();
  void endEditing();
  void grabKeyboardOfDesktop(bool grabbed);
  void processKey(const QKeyEvent& event);
  void moveFocusOn();

  std::shared_ptr<QKHotKey> hotKey_;
  const std::shared_ptr<QKHotKeyEditedField> editedField_;
  QKHotKeyEditing editing_;
  KeyRepeats repeats_;
  bool isEditing_ = false;
};

}  // namespace seldial
