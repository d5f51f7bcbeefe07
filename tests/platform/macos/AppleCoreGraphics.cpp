// The doubles of Core Graphics and Application Services.
#include <ApplicationServices/ApplicationServices.h>
#include <gtest/gtest.h>

#include "tests/platform/macos/Apple.h"

using seldial::tests::apple;

bool systemIsAtLeast(const char* version) {
  EXPECT_STREQ(version, "macOS 11.0");
  return apple().is11;
}

extern "C" {

CFStringRef kAXTrustedCheckOptionPrompt = reinterpret_cast<CFStringRef>(std::uintptr_t{6});

Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options) {
  apple().calls.push_back("AXIsProcessTrustedWithOptions " + apple().nameOf(options));
  return apple().hasConsent ? 1 : 0;
}

bool CGRequestPostEventAccess() {
  apple().calls.emplace_back("CGRequestPostEventAccess");
  return apple().hasConsent;
}

CGEventSourceRef CGEventSourceCreate(CGEventSourceStateID stateID) {
  apple().calls.push_back("CGEventSourceCreate " + std::to_string(stateID));
  if (apple().refuseEventSource) return nullptr;
  return reinterpret_cast<CGEventSourceRef>(apple().make("event source"));
}

CGEventRef CGEventCreateKeyboardEvent(CGEventSourceRef source, CGKeyCode virtualKey, bool keyDown) {
  const auto name = std::to_string(virtualKey) + (keyDown ? " down" : " up");
  apple().calls.push_back("CGEventCreateKeyboardEvent " + apple().nameOf(source) + " " + name);
  if (keyDown ? apple().refuseKeyDown : apple().refuseKeyUp) return nullptr;
  return reinterpret_cast<CGEventRef>(apple().make(name));
}

void CGEventSetFlags(CGEventRef event, CGEventFlags flags) {
  apple().calls.push_back("CGEventSetFlags " + apple().nameOf(event) + " " + std::to_string(flags));
}

void CGEventPost(CGEventTapLocation tap, CGEventRef event) {
  apple().calls.push_back("CGEventPost " + std::to_string(tap) + " " + apple().nameOf(event));
}

}  // extern "C"
