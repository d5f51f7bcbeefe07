// Recording a hot key in a text field: the toolkit-independent part.
#pragma once

#include <memory>

#include "hotkey/QKHotKey.h"

namespace seldial {

/// The interface of a text field that shows a hot key, for QKHotKeyEditing. Main thread only.
class QKHotKeyEditedField {
 public:
  virtual ~QKHotKeyEditedField() = default;

  /// The shown record; null when there is none.
  [[nodiscard]] virtual std::shared_ptr<QKHotKey> hotKey() const = 0;
  /// Shows another record, or none for null. Has no effect if the record is already shown.
  virtual void setHotKey(const std::shared_ptr<QKHotKey>& hotKey) = 0;
  /// Puts the record's display string, upper-cased, into the field's editor; null clears it.
  virtual void showInEditor(const std::shared_ptr<QKHotKey>& hotKey) = 0;
  /// Notifies the field's target that the record was changed or confirmed.
  virtual void sendAction() = 0;
  /// Resigns the keyboard focus; the toolkit then ends the editing.
  virtual void resignFocus() = 0;
};

/// Edits one hot key field at a time. Each combination that is pressed becomes the field's record
/// and gets the task of the record that the field had at the beginning. Return and Enter end the
/// editing; Escape ends it and restores that first record. Nothing is registered. Main thread only.
class QKHotKeyEditing {
 public:
  /// Sets the field to edit, held weakly, or null for none. Escape restores the record that the
  /// field has at this moment.
  void setHotKeyField(const std::shared_ptr<QKHotKeyEditedField>& field);

  /// The field has got the keyboard focus.
  void begin();
  /// The field has lost the focus, for any reason.
  void end();

  /// Handles an event (kKeyDown and kFlagsChanged; others are ignored). While the field has the
  /// focus, pass every key event here and nowhere else.
  void processHotkeyEvent(const platform::KeyEvent& event);

 private:
  void record(const platform::KeyEvent& event);
  void finish(bool restore);

  std::weak_ptr<QKHotKeyEditedField> hotKeyField_;
  std::shared_ptr<QKHotKey> originalHotKey_;
  bool hasSeenKeyDown_ = false;
};

}  // namespace seldial
