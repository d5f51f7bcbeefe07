#import "hotkey/appkit/QKHotKeyTextField.h"

#include <utility>

#include "hotkey/QKKeyStrings.h"
#import "hotkey/appkit/QKHotKeyTextFieldEditor.h"

/// What a field shows, in upper case; nothing for null.
static NSString* shownString(const std::shared_ptr<seldial::QKHotKey>& hotKey) {
  if (!hotKey) return @"";
  const auto text = seldial::QKStringFromKeyCode(hotKey->keyCode(), hotKey->modifierFlags());
  return @(text.c_str()).uppercaseString;
}

namespace {

/// Passes on what the editing does to a field and to the shared editor that covers it.
class EditedField final : public seldial::QKHotKeyEditedField {
 public:
  explicit EditedField(QKHotKeyTextField* field) : field_(field) {}

  [[nodiscard]] std::shared_ptr<seldial::QKHotKey> hotKey() const override {
    QKHotKeyTextField* const field = field_;
    return field != nil ? field.hotKey : nullptr;
  }
  void setHotKey(const std::shared_ptr<seldial::QKHotKey>& hotKey) override {
    field_.hotKey = hotKey;
  }
  void showInEditor(const std::shared_ptr<seldial::QKHotKey>& hotKey) override {
    [QKHotKeyTextFieldEditor sharedEditor].string = shownString(hotKey);
  }
  void sendAction() override {
    QKHotKeyTextField* const field = field_;
    [field sendAction:field.action to:field.target];
  }
  void resignFocus() override {
    [[QKHotKeyTextFieldEditor sharedEditor].window makeFirstResponder:nil];
  }

 private:
  // Weak because an action may release the field that sends it.
  __weak QKHotKeyTextField* const field_;
};

}  // namespace

@implementation QKHotKeyTextField

@synthesize editedField = _editedField;

+ (Class)cellClass {
  return [QKHotKeyTextFieldCell class];
}

- (void)setHotKey:(std::shared_ptr<seldial::QKHotKey>)hotKey {
  if (hotKey == _hotKey) return;
  _hotKey = std::move(hotKey);
  [super setStringValue:shownString(_hotKey)];
}

- (std::shared_ptr<seldial::QKHotKeyEditedField>)editedField {
  if (!_editedField) _editedField = std::make_shared<EditedField>(self);
  return _editedField;
}

- (void)setStringValue:(NSString*)string {
  NSLog(@"-[QKHotKeyTextField setStringValue:] is not what you want. "
        @"Use -[QKHotKeyTextField setHotKey:] instead.");
  [super setStringValue:string];
}

- (NSString*)stringValue {
  NSLog(@"-[QKHotKeyTextField stringValue] is not what you want. "
        @"Use -[QKHotKeyTextField hotKey] instead.");
  return [super stringValue];
}

@end

@implementation QKHotKeyTextFieldCell

- (NSTextView*)fieldEditorForView:(NSView*)view {
  if (![view isKindOfClass:[QKHotKeyTextField class]]) return nil;
  QKHotKeyTextFieldEditor* const editor = [QKHotKeyTextFieldEditor sharedEditor];
  editor.insertionPointColor = editor.backgroundColor;  // hides the caret: nothing is typed here
  [editor setHotKeyField:static_cast<QKHotKeyTextField*>(view)];
  return editor;
}

@end
