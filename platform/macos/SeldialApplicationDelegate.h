#pragma once

#import <AppKit/AppKit.h>

/// Makes the ports and, on them, the platform::ApplicationDelegate that applicationMain() was given
/// a maker of, and forwards to it what AppKit tells. Main thread only.
@interface SeldialApplicationDelegate : NSObject <NSApplicationDelegate>
@end
