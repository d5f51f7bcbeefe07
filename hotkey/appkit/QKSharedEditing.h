#pragma once

#include <memory>

#include "hotkey/QKHotKeyEditing.h"

namespace seldial {

/// The editing of hot key fields that share one text editor, as those of an AppKit program do:
/// which of them the editor works for. Fields are held weakly. Main thread only.
class QKSharedEditing {
 public:
  /// The editor was asked for by this field; null for none. While a field is being edited, another
  /// one waits for begin(), and the same one changes nothing: toolkits ask for the editor also
  /// without the intent to edit.
  void setHotKeyField(const std::shared_ptr<QKHotKeyEditedField>& field);

  /// The editor has got the focus in the field that asked for it last.
  void begin();
  /// The editor has lost the focus, or its place in a window.
  void end();

  /// Applies the event to the edited field. False when there is no such field, or no longer: then
  /// the editor should give up the focus.
  [[nodiscard]] bool processHotkeyEvent(const platform::KeyEvent& event);

 private:
  void edit(const std::shared_ptr<QKHotKeyEditedField>& field);

  QKHotKeyEditing editing_;
  std::weak_ptr<QKHotKeyEditedField> field_;  ///< the one in editing_
  std::weak_ptr<QKHotKeyEditedField> next_;   ///< asked for the editor while field_ is edited
  bool isEditing_ = false;
};

}  // namespace seldial
