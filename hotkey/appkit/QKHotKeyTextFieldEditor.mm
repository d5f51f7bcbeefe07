#import "hotkey/appkit/QKHotKeyTextFieldEditor.h"

#include <memory>

#include "hotkey/QKHotKeyEditing.h"
#import "hotkey/appkit/QKEditedTextField.h"
#import "hotkey/appkit/QKHotKeyTextField.h"

static const NSRect kFrame = {{0, 0}, {100, 32}};
static const NSEventMask kMonitored = NSEventMaskKeyDown | NSEventMaskFlagsChanged;
static_assert(kMonitored == (1U << seldial::QKHotKeyEditingEvent::kKeyDown |
                             1U << seldial::QKHotKeyEditingEvent::kFlagsChanged),
              "AppKit numbers its events as the editing does");

static seldial::QKHotKeyEditingEvent editingEvent(NSEvent* event) {
  seldial::QKHotKeyEditingEvent result;
  result.type = static_cast<std::uint32_t>(event.type);
  result.keyCode = event.keyCode;
  result.modifierFlags = event.modifierFlags;
  if (event.type == NSEventTypeKeyDown) {  // AppKit raises where another event is asked
    const char* const characters = event.charactersIgnoringModifiers.UTF8String;
    if (characters != nullptr) result.charactersIgnoringModifiers = characters;
  }
  return result;
}

@implementation QKHotKeyTextFieldEditor {
  seldial::QKHotKeyEditing _editing;  // with the original hot key and whether a key was seen
  std::shared_ptr<seldial::QKEditedTextField> _editedField;
  id _globalMonitor;
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
  if (field != nil && _globalMonitor != nil) return;
  _hotKeyField = field;
  _editedField = field != nil ? std::make_shared<seldial::QKEditedTextField>(field, self) : nullptr;
  _editing.setHotKeyField(_editedField);
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

// AppKit takes an editor away from a field that goes, whatever resignFirstResponder said.
- (void)viewWillMoveToWindow:(NSWindow*)window {
  [super viewWillMoveToWindow:window];
  if (window == nil && _globalMonitor != nil) [self endHotKeyEditing];
}

- (void)endHotKeyEditing {
  self.hotKeyField = nil;
  [self stopKeyMonitor];
}

- (void)startKeyMonitor {
  [self stopKeyMonitor];
  // It owns the monitor, and text views know weak references from 10.12 on alone.
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
  _editing.processHotkeyEvent(editingEvent(event));
}

@end
