// hotkey_record: a window with a field in which a hot key is recorded. After each recording, it
// registers the hot key and prints it, then a line each time it is used, until the window is
// closed.
#import <AppKit/AppKit.h>
#include <seldial/hotkey/QKHotKeyCenter.h>
#include <seldial/hotkey/QKKeyStrings.h>
#include <seldial/hotkey/VirtualKeys.h>
#import <seldial/hotkey/appkit/QKHotKeyTextField.h>
#include <seldial/hotkey/macos/HotKeyEvents.h>

#include <iostream>

using namespace seldial;

static constexpr auto kModifiers = platform::kModifierFlagControl | platform::kModifierFlagOption;

/// The delegate of the application, and the target of the field's action.
@interface Recorder : NSObject <NSApplicationDelegate>
@property(nonatomic) NSWindow* window;
@end

@implementation Recorder

- (void)applicationDidFinishLaunching:(NSNotification*)notification {
  QKHotKeyCenter::setHotKeyEvents(std::make_shared<platform::macos::CarbonHotKeyEvents>());
  QKHotKeyTextField* const field =
      [[QKHotKeyTextField alloc] initWithFrame:NSMakeRect(20, 20, 160, 22)];
  // Every recorded hot key gets the task of this one.
  field.hotKey = QKHotKey::hotKeyWithKeyCode(platform::kVK_ANSI_D, kModifiers,
                                             [](const auto&) { std::cout << "used" << std::endl; });
  field.target = self;
  field.action = @selector(recorded:);

  self.window = [[NSWindow alloc] initWithContentRect:NSMakeRect(0, 0, 200, 62)
                                            styleMask:NSTitledWindowMask | NSClosableWindowMask
                                              backing:NSBackingStoreBuffered
                                                defer:NO];
  self.window.releasedWhenClosed = NO;
  [self.window.contentView addSubview:field];
  [self.window makeKeyAndOrderFront:nil];
  [NSApp activateIgnoringOtherApps:YES];
}

- (void)recorded:(QKHotKeyTextField*)field {
  const auto center = QKHotKeyCenter::sharedHotKeyCenter();
  const auto hotKey = field.hotKey;
  center->unregisterAllHotKeys();
  const bool registered = hotKey && center->registerHotKey(hotKey) != nullptr;
  std::cout << (hotKey ? QKStringFromKeyCode(hotKey->keyCode(), hotKey->modifierFlags())
                       : "nothing")
            << (registered ? "" : " cannot be registered") << std::endl;
}

- (BOOL)applicationShouldTerminateAfterLastWindowClosed:(NSApplication*)sender {
  return YES;
}

@end

int main() {
  @autoreleasepool {
    NSApplication* const application = NSApplication.sharedApplication;
    application.activationPolicy = NSApplicationActivationPolicyRegular;
    Recorder* const recorder = [[Recorder alloc] init];
    application.delegate = recorder;
    [application run];
  }
}
