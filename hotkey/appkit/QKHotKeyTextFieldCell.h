#pragma once

#import <AppKit/AppKit.h>

/// The cell of a QKHotKeyTextField: it hands the shared QKHotKeyTextFieldEditor out.
@interface QKHotKeyTextFieldCell : NSTextFieldCell
@end
