#import "hotkey/appkit/QKHotKeyTextFieldCell.h"

#import "hotkey/appkit/QKHotKeyTextField.h"
#import "hotkey/appkit/QKHotKeyTextFieldEditor.h"

@implementation QKHotKeyTextFieldCell

- (NSTextView*)fieldEditorForView:(NSView*)view {
  if (![view isKindOfClass:[QKHotKeyTextField class]]) return nil;
  QKHotKeyTextFieldEditor* const editor = [QKHotKeyTextFieldEditor sharedEditor];
  editor.insertionPointColor = editor.backgroundColor;  // a caret would promise typing
  editor.hotKeyField = static_cast<QKHotKeyTextField*>(view);
  return editor;
}

@end
