#include "hotkey/appkit/QKSharedEditing.h"

namespace seldial {

void QKSharedEditing::setHotKeyField(const std::shared_ptr<QKHotKeyEditedField>& field) {
  if (isEditing_ && field) {
    next_ = field;
  } else {
    edit(field);
  }
}

void QKSharedEditing::begin() {
  const auto next = next_.lock();
  if (next && next != field_.lock()) edit(next);
  next_.reset();
  isEditing_ = true;
  editing_.begin();
}

void QKSharedEditing::end() {
  // In another window, the next field asks before this one has lost the focus.
  const auto next = next_.lock() != field_.lock() ? next_ : std::weak_ptr<QKHotKeyEditedField>();
  edit(nullptr);
  next_ = next;
  isEditing_ = false;
}

bool QKSharedEditing::processHotkeyEvent(const platform::KeyEvent& event) {
  if (field_.expired()) return false;
  editing_.processHotkeyEvent(event);
  return true;
}

void QKSharedEditing::edit(const std::shared_ptr<QKHotKeyEditedField>& field) {
  field_ = field;
  next_.reset();
  editing_.setHotKeyField(field);
}

}  // namespace seldial
