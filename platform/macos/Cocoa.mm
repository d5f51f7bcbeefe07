#include "platform/macos/Cocoa.h"

#import <AppKit/AppKit.h>

namespace seldial::platform::macos {

EventFields eventFields(const void* event) {
  NSEvent* const cocoaEvent = [NSEvent eventWithEventRef:event];
  if (cocoaEvent == nil) return {};
  const NSPoint location = cocoaEvent.locationInWindow;
  return {location.x, location.y, cocoaEvent.modifierFlags, cocoaEvent.timestamp};
}

void inAutoreleaseScope(const std::function<void()>& body) {
  @autoreleasepool {
    body();
  }
}

void terminateSharedApplication(ApplicationDelegate* sender) {
  // What stands for the sender among Cocoa's objects is the application's delegate.
  [NSApp terminate:sender != nullptr ? NSApp.delegate : nil];
}

}  // namespace seldial::platform::macos
