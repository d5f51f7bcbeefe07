// A text field for Qt in which a hot key is recorded.
#pragma once

#include <QKeyEvent>
#include <QLineEdit>
#include <memory>

#include "hotkey/QKHotKeyEditing.h"
#include "platform/Keyboard.h"

namespace seldial {

/// Finds the events of a key that is held and repeats. On X11 auto-repeat is a release and a press
/// with the same time, which Qt recognises only if it happens to read both events at once. Pass all
/// presses and releases in order; a repeated call for the same event is harmless.
class KeyRepeats {
 public:
  /// Whether the event is a repetition.
  [[nodiscard]] bool isRepeat(const QKeyEvent& event);

 private:
  quint32 key_ = 0;
  quint64 released_ = 0;  ///< when it last went up, ms
};

/// A line edit that shows a hot key as glyphs. While it has the keyboard focus it records: each
/// combination that is pressed becomes its record; Return or Escape ends the editing and moves the
/// focus to the next widget (see QKHotKeyEditing). The record is not registered.
///
/// During the editing, key presses go nowhere else. The keyboard is grabbed, so that combinations
/// of the window manager and of other programs can be recorded; if the desktop refuses the grab,
/// those cannot be recorded. When the window becomes inactive the editing ends, and it does not
/// resume when the window becomes active again.
///
/// Main thread only.
class QKHotKeyTextField : public QLineEdit {
  Q_OBJECT

 public:
  /// An empty field on these ports (see platform::qt::Desktop::keyboard()).
  explicit QKHotKeyTextField(platform::KeyboardPorts keyboard, QWidget* parent = nullptr);
  ~QKHotKeyTextField() override;
  Q_DISABLE_COPY_MOVE(QKHotKeyTextField)

  /// The displayed record; null if there is none.
  [[nodiscard]] std::shared_ptr<QKHotKey> hotKey() const { return hotKey_; }
  /// Displays the record, upper-cased; null clears the field. Has no effect, not even on the text,
  /// if the record is already displayed.
  void setHotKey(const std::shared_ptr<QKHotKey>& hotKey);

  /// Sets the text and writes a warning to standard error. Use setHotKey() instead.
  void setStringValue(const QString& string);
  /// Returns the text and writes a warning to standard error. Use hotKey() instead.
  [[nodiscard]] QString stringValue() const;

  /// Whether a hot key is being recorded.
  [[nodiscard]] bool isEditing() const { return isEditing_; }

 Q_SIGNALS:
  /// The user recorded a hot key, or ended the editing by Return or Escape.
  void actionSent();
  /// The editing has begun or ended. Once it has ended, the field keeps no earlier record alive.
  void editingChanged(bool isEditing);

 private:
  bool event(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

  class EditedField;

  void showHotKey(const std::shared_ptr<QKHotKey>& hotKey);
  void beginEditing();
  void endEditing();
  void grabDesktopKeyboard(bool grabbed);
  void processKey(const QKeyEvent& event);
  void advanceFocus();

  const platform::KeyboardPorts keyboard_;
  std::shared_ptr<QKHotKey> hotKey_;
  const std::shared_ptr<QKHotKeyEditedField> editedField_;
  QKHotKeyEditing editing_;
  KeyRepeats repeats_;
  bool isEditing_ = false;
};

}  // namespace seldial
