#import "hotkey/appkit/QKHotKeyTextFieldEditor.h"

#import "hotkey/appkit/QKHotKeyTextField.h"
#include "hotkey/appkit/QKSharedEditing.h"

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

// AppKit takes the editor out of its window without resignFirstResponder when the edited field is
// removed, but also when it only re-hosts the editor. Which of the two it is shows afterwards.
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
