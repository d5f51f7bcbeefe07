#pragma once

#import <AppKit/AppKit.h>

#include <memory>

#include "hotkey/QKHotKey.h"

/// A text field that shows a hot key as glyphs; who edits it records a new one by pressing it. Each
/// recording, and the key that ends the editing, sends the field's action to its target. The record
/// is registered by nobody here. Main thread only, as every view.
@interface QKHotKeyTextField : NSTextField

/// The shown record, null when there is none. To set the one that is there already does nothing.
@property(nonatomic) std::shared_ptr<seldial::QKHotKey> hotKey;

@end
