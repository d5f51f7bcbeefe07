#pragma once

#import <AppKit/AppKit.h>

/// Installs the ports, makes the platform::ApplicationDelegate that applicationMain() was given a
/// maker of, and forwards to it what AppKit tells. Main thread only.
@interface SeldialApplicationDelegate : NSObject <NSApplicationDelegate>
@end
