// A text field for Qt in which a hot key is recorded.
#pragma once

#include <QKeyEvent>
#include <QLineEdit>
#include <memory>

#include "hotkey/QKHotKeyEditing.h"
#include "platform/Keyboard.h"

namespace seldial {

/// Finds the events of a key that is held and repeats. On X11 such a key goes up and down again at
/// the same time, which Qt notices only if it happens to read both events at once. Must see the
/// presses and releases in order; the same one more than once does no harm.
class KeyRepeats {
 public:
  /// Whether the event is a repetition.
  [[nodiscard]] bool isRepeat(const QKeyEvent& event);

 private:
  quint32 key_ = 0;
  quint64 released_ = 0;  ///< when it last went up, ms
};

/// A line edit that shows a hot key as glyphs. While it has the keyboard focus it is edited: each
/// combination that is pressed becomes its record; Return or Escape ends the editing and moves the
/// focus on (see QKHotKeyEditing). The record is not registered.
///
/// While it is edited, key presses go nowhere else. The keyboard is grabbed, so that combinations
/// of the window manager and of other programs can be recorded; where the desktop refuses the grab,
/// only those cannot. When the window loses its activation the editing ends, and it does not begin
/// again by itself when the window gets it back.
///
/// Main thread only.
class QKHotKeyTextField : public QLineEdit {
  Q_OBJECT

 public:
  /// An empty field on these ports (see platform::qt::Desktop::keyboard()).
  explicit QKHotKeyTextField(platform::KeyboardPorts keyboard, QWidget* parent = nullptr);
  ~QKHotKeyTextField() override;
  Q_DISABLE_COPY_MOVE(QKHotKeyTextField)

  /// The shown record; null when there is none.
  [[nodiscard]] std::shared_ptr<QKHotKey> hotKey() const { return hotKey_; }
  /// Shows the record, upper-cased; null shows nothing. The record that is shown already changes
  /// nothing and does not refresh the text.
  void setHotKey(const std::shared_ptr<QKHotKey>& hotKey);

  /// Sets the text. Use setHotKey() instead, as a line on standard error says.
  void setStringValue(const QString& string);
  /// The text. Use hotKey() instead, as a line on standard error says.
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
  void grabKeyboardOfDesktop(bool grabbed);
  void processKey(const QKeyEvent& event);
  void moveFocusOn();

  const platform::KeyboardPorts keyboard_;
  std::shared_ptr<QKHotKey> hotKey_;
  const std::shared_ptr<QKHotKeyEditedField> editedField_;
  QKHotKeyEditing editing_;
  KeyRepeats repeats_;
  bool isEditing_ = false;
};

}  // namespace seldial
