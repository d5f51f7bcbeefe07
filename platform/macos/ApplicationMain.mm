// The entry point of the program on macOS. NSApplicationMain() creates the principal class of the
// bundle, which creates the application's delegate; so the bundle needs no nib.
#import <AppKit/AppKit.h>

#include <memory>

#include "platform/macos/Cocoa.h"
#include "platform/macos/Desktop.h"
#include "platform/posix/ProcessSetUp.h"

using namespace seldial::platform;

namespace {

/// The arguments of applicationMain(), for the objects that AppKit creates. Main thread only.
struct Launch {
  std::vector<std::string> arguments;
  MakeApplicationDelegate makeDelegate;
};

Launch& launch() {
  static auto* const launch = new Launch;
  return *launch;
}

}  // namespace

/// Forwards the notifications of AppKit to the platform::ApplicationDelegate, which it creates.
@interface SeldialApplicationDelegate : NSObject <NSApplicationDelegate>
@end

@implementation SeldialApplicationDelegate {
  std::shared_ptr<ApplicationDelegate> _delegate;
  id<NSObject> _activity;
}

- (instancetype)init {
  self = [super init];
  if (self != nil) {
    _delegate = launch().makeDelegate(macos::makePorts(launch().arguments));
    macos::onTerminationSignals([] { macos::terminateSharedApplication(nullptr); },
                                [delegate = _delegate] { delegate->applicationMustEnd(); });
  }
  return self;
}

- (void)applicationWillFinishLaunching:(NSNotification*)notification {
  // Without this activity, macOS would put an application without windows to sleep, which delays
  // the hot key, or end it without applicationWillTerminate. The machine itself may sleep.
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

// AppKit treats each argument without a hyphen as a document to open. The arguments are for
// Seldial.
- (BOOL)application:(NSApplication*)sender openFile:(NSString*)filename {
  return YES;
}

@end

/// The shared application: NSPrincipalClass in Info.plist.
@interface SeldialApplication : NSApplication
@end

@implementation SeldialApplication {
  SeldialApplicationDelegate* _ownedDelegate;  // AppKit refers to delegates weakly
}

- (instancetype)init {
  self = [super init];
  if (self != nil) {
    _ownedDelegate = [[SeldialApplicationDelegate alloc] init];
    self.delegate = _ownedDelegate;
  }
  return self;
}

@end

int seldial::platform::applicationMain(int argc, char* const argv[],
                                       const MakeApplicationDelegate& makeDelegate) {
  macos::restartUnderRealPath(argv);
  posix_port::setUpProcess();
  launch() = {{argv, argv + argc}, makeDelegate};
  NSApplicationMain(argc, const_cast<const char**>(argv));
  return 0;
}
