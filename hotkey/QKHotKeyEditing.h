// How a person records a hot key in a text field: what every toolkit's field does alike.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "hotkey/QKHotKey.h"

namespace seldial {

/// A text field that shows a hot key, as the editing of it sees it. Main thread only.
class QKHotKeyEditedField {
 public:
  virtual ~QKHotKeyEditedField() = default;

  /// The shown record; null when there is none.
  [[nodiscard]] virtual std::shared_ptr<QKHotKey> hotKey() const = 0;
  /// Shows that record; nothing happens when it is the one that is shown already. May be null.
  virtual void setHotKey(const std::shared_ptr<QKHotKey>& hotKey) = 0;
  /// Puts a display string, upper-cased, into the editor that stands in the field's place.
  virtual void setEditorString(const std::string& displayString) = 0;
  /// Tells whoever uses the field that its record has changed or been confirmed.
  virtual void sendAction() = 0;
  /// Gives the keyboard focus up; the toolkit then ends the editing.
  virtual void resignFocus() = 0;
};

/// A key event, in the terms of hot keys.
struct QKHotKeyEditingEvent {
  /// The types that matter; others are ignored.
  enum Type : std::uint32_t { kKeyDown = 10, kFlagsChanged = 12 };

  std::uint32_t type = kKeyDown;            ///< a Type, or another
  std::uint16_t keyCode = 0;                ///< virtual key code
  std::uint64_t modifierFlags = 0;          ///< platform::ModifierFlag values, others as they come
  std::string charactersIgnoringModifiers;  ///< UTF-8
};

/// The editing of one hot key field at a time: while it lasts, each combination that is pressed
/// becomes the field's record, with the task of the record that the field had before. Return and
/// Enter end it, Escape ends it and gives the field its record back. Nothing is registered.
/// Main thread only.
class QKHotKeyEditing {
 public:
  /// The field that is edited, held weakly, and with it the record that Escape brings back.
  void setHotKeyField(const std::shared_ptr<QKHotKeyEditedField>& field);

  /// The field has the keyboard focus now.
  void begin();
  /// The field has lost the focus, in whatever way.
  void end();

  /// Takes every key-down and every change of the modifiers while the field has the focus: none of
  /// them reaches anybody else.
  void processHotkeyEvent(const QKHotKeyEditingEvent& event);

 private:
  void record(const QKHotKeyEditingEvent& event);
  void finish(bool restore);

  std::weak_ptr<QKHotKeyEditedField> hotKeyField_;
  std::shared_ptr<QKHotKey> originalHotKey_;
  bool hasSeenKeyDown_ = false;
};

}  // namespace seldial
