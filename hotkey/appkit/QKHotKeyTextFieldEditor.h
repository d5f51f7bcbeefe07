#pragma once

#import <AppKit/AppKit.h>

@class QKHotKeyTextField;

/// The field editor that all QKHotKeyTextFields of the process share. While it has the focus, it
/// receives every key-down and modifier event of the process, other views none, and turns them into
/// the field's hot key (see QKHotKeyEditing). Main thread only.
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
