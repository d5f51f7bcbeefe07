#import <AppKit/AppKit.h>

#include "platform/macos/Cocoa.h"
#include "platform/macos/Launch.h"
#include "platform/macos/ProcessSetUp.h"

namespace seldial::platform {

/// AppKit makes the bundle's principal class, SeldialApplication, which does the rest.
int applicationMain(int argc, char* const argv[], const MakeApplicationDelegate& makeDelegate) {
  macos::restartUnderRealPath(argv);
  macos::setUpProcess();
  macos::onTerminationSignals([] { macos::terminateSharedApplication(nullptr); });
  macos::launch() = {{argv, argv + argc}, makeDelegate};
  NSApplicationMain(argc, const_cast<const char**>(argv));
  return 0;
}

}  // namespace seldial::platform
