#pragma once

#import <AppKit/AppKit.h>

@class QKHotKeyTextField;

/// The field editor of every QKHotKeyTextField. While it has the focus, the process's key-down and
/// modifier events come to it alone and become the field's hot key (see QKHotKeyEditing). Main
/// thread only.
@interface QKHotKeyTextFieldEditor : NSTextView

/// The one editor of the process, made on first use.
+ (instancetype)sharedEditor;

/// The field that is edited, or will be as soon as the editor has the focus. While it has, another
/// one than nil is ignored: AppKit asks cells for their editor in the middle of an editing, too,
/// and Escape brings back the record from its beginning.
@property(nonatomic, weak) QKHotKeyTextField* hotKeyField;

/// What the event does to the edited field.
- (void)processHotkeyEvent:(NSEvent*)event;

@end
