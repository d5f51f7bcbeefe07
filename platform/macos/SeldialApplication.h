#pragma once

#import <AppKit/AppKit.h>

/// The shared application: the principal class of the bundle. It makes its delegate itself, so that
/// the bundle needs no nib.
@interface SeldialApplication : NSApplication
@end
