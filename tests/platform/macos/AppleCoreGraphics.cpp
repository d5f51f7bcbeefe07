// The events of Core Graphics, played.
#include <CoreGraphics/CoreGraphics.h>

#include "tests/platform/macos/Apple.h"

using seldial::tests::apple;

extern "C" {

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
