#import "hotkey/appkit/QKHotKeyTextField.h"

#include <utility>

#include "hotkey/QKKeyStrings.h"
#include "hotkey/appkit/QKSharedEditing.h"

/// The field editor that all QKHotKeyTextFields of the process share. While it has the focus, it
/// receives every key-down and modifier event of the process, which then reaches no other view, and
/// turns it into the field's hot key (see QKHotKeyEditing). Main thread only.
@interface QKHotKeyTextFieldEditor : NSTextView

/// Created on first use.
+ (instancetype)sharedEditor;

/// Sets the field to edit, held weakly, or nil for none. While another field is being edited, the
/// new one waits until the editor gets the focus in it: AppKit also asks a cell for its editor only
/// to see whether the field is being edited.
- (void)setHotKeyField:(QKHotKeyTextField*)field;

/// Applies the event to the edited field. Ends the editing when that field no longer exists.
- (void)processHotkeyEvent:(NSEvent*)event;

@end

/// The text that a field displays, in upper case; empty for null.
static NSString* shownString(const std::shared_ptr<seldial::QKHotKey>& hotKey) {
  if (!hotKey) return @"";
  const auto text = seldial::QKStringFromKeyCode(hotKey->keyCode(), hotKey->modifierFlags());
  return @(text.c_str()).uppercaseString;
}

namespace {

/// Applies the editing to a field and to the shared editor.
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

static const NSRect kFrame = {{0, 0}, {100, 32}};
static const NSEventMask kMonitored = NSEventMaskKeyDown | NSEventMaskFlagsChanged;
static_assert(kMonitored == (1U << seldial::platform::KeyEvent::kKeyDown |
                             1U << seldial::platform::KeyEvent::kFlagsChanged),
              "KeyEvent has AppKit's numbers");

static seldial::platform::KeyEvent editingEvent(NSEvent* event) {
  seldial::platform::KeyEvent result;
  result.type = static_cast<std::uint32_t>(event.type);
  result.keyCode = event.keyCode;
  result.modifierFlags = event.modifierFlags;
  if (event.type == NSEventTypeKeyDown) {  // other events have no characters, and AppKit raises
    const char* const characters = event.charactersIgnoringModifiers.UTF8String;
    if (characters != nullptr) result.charactersIgnoringModifiers = characters;
  }
  return result;
}

@implementation QKHotKeyTextFieldEditor {
  seldial::QKSharedEditing _editing;
  id _globalMonitor;  // nil unless a field is being edited
}

+ (instancetype)sharedEditor {
  static QKHotKeyTextFieldEditor* const editor = [] {
    auto* const made = [[QKHotKeyTextFieldEditor alloc] initWithFrame:kFrame];
    made.fieldEditor = YES;
    return made;
  }();
  return editor;
}

- (void)dealloc {
  [self stopKeyMonitor];
}

- (void)setHotKeyField:(QKHotKeyTextField*)field {
  _editing.setHotKeyField(field != nil ? field.editedField : nullptr);
}

- (BOOL)becomeFirstResponder {
  if (![super becomeFirstResponder]) return NO;
  _editing.begin();
  [self startKeyMonitor];
  return YES;
}

- (BOOL)resignFirstResponder {
  if (![super resignFirstResponder]) return NO;
  [self endHotKeyEditing];
  return YES;
}

// AppKit removes the editor from its window without resignFirstResponder when the edited field is
// removed, but also when it only moves the editor. The difference shows only afterwards.
- (void)viewWillMoveToWindow:(NSWindow*)window {
  [super viewWillMoveToWindow:window];
  if (_globalMonitor == nil) return;
  dispatch_async(dispatch_get_main_queue(), ^{
    if (self.window.firstResponder != self) [self endHotKeyEditing];
  });
}

- (void)endHotKeyEditing {
  _editing.end();
  [self stopKeyMonitor];
}

- (void)startKeyMonitor {
  [self stopKeyMonitor];
  // Unretained because the editor owns the monitor; text views support weak references only from
  // macOS 10.12.
  __unsafe_unretained QKHotKeyTextFieldEditor* const editor = self;
  _globalMonitor = [NSEvent addLocalMonitorForEventsMatchingMask:kMonitored
                                                         handler:^NSEvent*(NSEvent* event) {
                                                           [editor processHotkeyEvent:event];
                                                           return nil;
                                                         }];
}

- (void)stopKeyMonitor {
  if (_globalMonitor == nil) return;
  [NSEvent removeMonitor:_globalMonitor];
  _globalMonitor = nil;
}

- (void)processHotkeyEvent:(NSEvent*)event {
  if (_editing.processHotkeyEvent(editingEvent(event))) return;
  [self.window makeFirstResponder:nil];
  [self endHotKeyEditing];  // also without a window, or when it refuses
}

@end
