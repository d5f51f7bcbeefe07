#pragma once

#import <AppKit/AppKit.h>

#include <memory>

#include "hotkey/QKHotKeyEditing.h"

/// A text field that shows a hot key as glyphs and records a new one while it has the focus. The
/// field sends its action to its target after each recording and when Return, Enter or Escape ends
/// the editing. It registers nothing. Main thread only, like every view.
@interface QKHotKeyTextField : NSTextField

/// The displayed record, or null. Setting the same object again has no effect.
@property(nonatomic) std::shared_ptr<seldial::QKHotKey> hotKey;

/// The field's interface for the editing. It lives as long as the field, which owns it.
@property(nonatomic, readonly) std::shared_ptr<seldial::QKHotKeyEditedField> editedField;

@end

/// The cell of a QKHotKeyTextField. All of them share one field editor.
@interface QKHotKeyTextFieldCell : NSTextFieldCell
@end
