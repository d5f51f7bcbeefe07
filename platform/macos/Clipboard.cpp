#include "platform/macos/Clipboard.h"

#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CoreGraphics.h>

#include <memory>

#include "platform/VirtualKeys.h"
#include "platform/macos/Cocoa.h"

namespace seldial::platform::macos {
namespace {

constexpr const char* kUTF8PlainText = "public.utf8-plain-text";

struct Release {
  void operator()(const void* object) const { CFRelease(object); }
};

/// A Core Foundation object that this code owns; null where the system made none.
template <class Ref>
using Owned = std::unique_ptr<std::remove_pointer_t<Ref>, Release>;

}  // namespace

void MacClipboard::clear() {
  clearGeneralPasteboard();
}

bool MacClipboard::copySelection() {
  // An event needs no source: one that could not be made is not an error.
  const Owned<CGEventSourceRef> source(CGEventSourceCreate(kCGEventSourceStateHIDSystemState));
  const Owned<CGEventRef> keyDown(CGEventCreateKeyboardEvent(source.get(), kVK_ANSI_C, true));
  const Owned<CGEventRef> keyUp(CGEventCreateKeyboardEvent(source.get(), kVK_ANSI_C, false));
  if (!keyDown || !keyUp) return false;
  // The key-up event keeps the flags that it was created with, on purpose.
  CGEventSetFlags(keyDown.get(), kCGEventFlagMaskCommand);
  CGEventPost(kCGHIDEventTap, keyDown.get());
  CGEventPost(kCGHIDEventTap, keyUp.get());
  return true;
}

std::optional<std::string> MacClipboard::text() {
  return generalPasteboardString(kUTF8PlainText);
}

}  // namespace seldial::platform::macos
