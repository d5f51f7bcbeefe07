#import "hotkey/appkit/QKEditedTextField.h"

#import "hotkey/appkit/QKHotKeyTextField.h"
#import "hotkey/appkit/QKUpperCasedString.h"

namespace seldial {

std::shared_ptr<QKHotKey> QKEditedTextField::hotKey() const {
  QKHotKeyTextField* const field = field_;
  return field != nil ? field.hotKey : nullptr;
}

void QKEditedTextField::setHotKey(const std::shared_ptr<QKHotKey>& hotKey) {
  field_.hotKey = hotKey;
}

void QKEditedTextField::setEditorString(const std::string& displayString) {
  editor_.string = QKUpperCasedString(displayString);
}

void QKEditedTextField::sendAction() {
  QKHotKeyTextField* const field = field_;
  [field sendAction:field.action to:field.target];
}

void QKEditedTextField::resignFocus() {
  [editor_.window makeFirstResponder:nil];
}

}  // namespace seldial
