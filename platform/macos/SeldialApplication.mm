#import "platform/macos/SeldialApplication.h"

#include "platform/macos/Launch.h"
#import "platform/macos/SeldialApplicationDelegate.h"

@implementation SeldialApplication {
  SeldialApplicationDelegate* _ownedDelegate;  // AppKit holds delegates weakly
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

namespace seldial::platform::macos {

// Here also because the class is named by the bundle alone: this is what the linker needs of it.
Launch& launch() {
  static auto* const launch = new Launch;
  return *launch;
}

}  // namespace seldial::platform::macos
