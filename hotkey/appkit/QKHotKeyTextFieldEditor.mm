#import "hotkey/appkit/QKHotKeyTextFieldEditor.h"

#include <memory>

#include "hotkey/QKHotKeyEditing.h"
#import "hotkey/appkit/QKEditedTextField.h"
#import "hotkey/appkit/QKHotKeyTextField.h"

static const NSRect kFrame = {{0, 0}, {100, 32}};
static const NSEventMask kMonitored = NSEventMaskKeyDown | NSEventMaskFlagsChanged;

@implementation QKHotKeyTextFieldEditor {
  seldial::QKHotKeyEditing _editing;
  std::shared_ptr<seldial::QKEditedTextField> _editedField;
  id _globalMonitor;
}

+ (instancetype)sharedEditor {
  static QKHotKeyTextFieldEditor *const editor = [[self alloc] initWithFrame:kFrame];
  return editor;
}

- (instancetype)initWithFrame:(NSRect)frame {
  self = [super initWithFrame:frame];
  if (self != nil) self.fieldEditor = YES;
  return self;
}
