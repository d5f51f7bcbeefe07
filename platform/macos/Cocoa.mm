#include "platform/macos/Cocoa.h"

#import <AppKit/AppKit.h>

namespace seldial::platform::macos {

EventFields eventFields(const void* event) {
  NSEvent* const cocoaEvent = [NSEvent eventWithEventRef:event];
  if (cocoaEvent == nil) return {};
  const NSPoint location = cocoaEvent.locationInWindow;
  return {location.x, location.y, cocoaEvent.modifierFlags, cocoaEvent.timestamp};
}

void clearGeneralPasteboard() {
  [NSPasteboard.generalPasteboard clearContents];
}

std::optional<std::string> generalPasteboardString(const char* type) {
  NSString* const text = [NSPasteboard.generalPasteboard stringForType:@(type)];
  NSData* const data = [text dataUsingEncoding:NSUTF8StringEncoding];
  if (data == nil) return std::nullopt;
  return std::string(static_cast<const char*>(data.bytes), data.length);
}

void inAutoreleaseScope(const std::function<void()>& body) {
  @autoreleasepool {
    body();
  }
}

void logToSystem(const char* line) {
  NSLog(@"%s", line);
}

void terminateSharedApplication(ApplicationDelegate* sender) {
  [NSApp terminate:sender != nullptr ? NSApp.delegate : nil];
}

}  // namespace seldial::platform::macos
