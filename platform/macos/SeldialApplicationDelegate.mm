#import "platform/macos/SeldialApplicationDelegate.h"

#include <memory>

#include "platform/macos/Launch.h"
#include "platform/macos/Ports.h"

using namespace seldial::platform;

@implementation SeldialApplicationDelegate {
  std::shared_ptr<ApplicationDelegate> _delegate;
  id<NSObject> _activity;
}

- (instancetype)init {
  self = [super init];
  if (self != nil) {
    _delegate = macos::launch().makeDelegate(macos::makePorts(macos::launch().arguments));
  }
  return self;
}

- (void)applicationWillFinishLaunching:(NSNotification*)notification {
  // Neither put to sleep as an application without windows, which would delay the hot key, nor
  // ended without applicationWillTerminate; the machine itself may sleep.
  _activity = [NSProcessInfo.processInfo
      beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                        reason:@"Waiting for the hot key"];
  _delegate->applicationWillFinishLaunching();
}

- (void)applicationDidFinishLaunching:(NSNotification*)notification {
  _delegate->applicationDidFinishLaunching();
}

- (void)applicationWillTerminate:(NSNotification*)notification {
  _delegate->applicationWillTerminate();
}

// AppKit takes every argument without a hyphen for a document to open. The command line is ours.
- (BOOL)application:(NSApplication*)sender openFile:(NSString*)filename {
  return YES;
}

@end
