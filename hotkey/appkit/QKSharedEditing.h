#pragma once

#include <memory>

#include "hotkey/QKHotKeyEditing.h"

namespace seldial {

/// The editing of hot key fields that share one text editor, as in AppKit programs. Keeps track of
/// the field for which the editor works. Fields are held weakly. Main thread only. Does not depend
/// on AppKit.
class QKSharedEditing {
 public:
  /// This field has asked for the editor; null for none. While a field is being edited, another
  /// field waits for begin(), and the same field has no effect: toolkits also ask for the editor
  /// without the intent to edit.
  void setHotKeyField(const std::shared_ptr<QKHotKeyEditedField>& field) {
    if (isEditing_ && field) {
      next_ = field;
    } else {
      edit(field);
    }
  }

  /// The editor has got the focus in the field that asked for it last.
  void begin() {
    const auto next = next_.lock();
    if (next && next != field_.lock()) edit(next);
    next_.reset();
    isEditing_ = true;
    editing_.begin();
  }

  /// The editor has lost the focus, or has been removed from its window.
  void end() {
    // If the next field is in another window, it asks before this field has lost the focus.
    const auto next = next_.lock() != field_.lock() ? next_ : std::weak_ptr<QKHotKeyEditedField>();
    edit(nullptr);
    next_ = next;
    isEditing_ = false;
  }

  /// Applies the event to the edited field. False when there is no such field, or no longer: then
  /// the editor should give up the focus.
  [[nodiscard]] bool processHotkeyEvent(const platform::KeyEvent& event) {
    if (field_.expired()) return false;
    editing_.processHotkeyEvent(event);
    return true;
  }

 private:
  void edit(const std::shared_ptr<QKHotKeyEditedField>& field) {
    field_ = field;
    next_.reset();
    editing_.setHotKeyField(field);
  }

  QKHotKeyEditing editing_;
  std::weak_ptr<QKHotKeyEditedField> field_;  ///< the one in editing_
  std::weak_ptr<QKHotKeyEditedField> next_;   ///< asked for the editor while field_ is edited
  bool isEditing_ = false;
};

}  // namespace seldial
