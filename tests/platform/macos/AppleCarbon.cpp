// The doubles of Carbon and Core Foundation, and of the functions in Cocoa.h.
#include <ApplicationServices/ApplicationServices.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/platform/macos/Apple.h"

using seldial::tests::apple;

namespace {

void note(const std::string& call) {
  apple().calls.push_back(call);
}

std::string number(std::uint64_t value) {
  return std::to_string(value);
}

std::string letters(OSType code) {
  std::string text;
  for (const unsigned shift : {24U, 16U, 8U, 0U})
    text += static_cast<char>((code >> shift) & 0xFFU);
  return text;
}

template <class Ref>
Ref made(const std::string& name) {
  return reinterpret_cast<Ref>(apple().make(name));
}

// Objects that the port does not own, so it never releases them.
template <class Ref>
Ref fixed(std::uintptr_t value) {
  return reinterpret_cast<Ref>(value);
}

const auto kApplicationTarget = fixed<EventTargetRef>(1);
const auto kDispatcherTarget = fixed<EventTargetRef>(2);
const auto kCurrentLayoutData = fixed<CFDataRef>(3);
const auto kFallbackLayoutData = fixed<CFDataRef>(4);

std::string targetName(EventTargetRef target) {
  return target == kApplicationTarget ? "application" : "dispatcher";
}

std::string layoutName(const void* layout) {
  return layout == kCurrentLayoutData ? "current" : "fallback";
}

}  // namespace

extern "C" {

const CFStringRef kTISPropertyUnicodeKeyLayoutData = fixed<CFStringRef>(5);

void CFRelease(CFTypeRef object) {
  EXPECT_NE(object, nullptr) << "the system would crash";
  note("CFRelease " + apple().nameOf(object));
  apple().release(object);
}

const UInt8* CFDataGetBytePtr(CFDataRef data) {
  EXPECT_NE(data, nullptr) << "the system would crash";
  return reinterpret_cast<const UInt8*>(data);
}

const CFBooleanRef kCFBooleanTrue = fixed<CFBooleanRef>(7);
const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks = {};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks = {};

CFDictionaryRef CFDictionaryCreate(CFAllocatorRef allocator, const void** keys, const void** values,
                                   CFIndex count, const CFDictionaryKeyCallBacks* keyCallBacks,
                                   const CFDictionaryValueCallBacks* valueCallBacks) {
  EXPECT_EQ(allocator, nullptr);
  EXPECT_EQ(keyCallBacks, &kCFTypeDictionaryKeyCallBacks);
  EXPECT_EQ(valueCallBacks, &kCFTypeDictionaryValueCallBacks);
  const bool asksForPrompt =
      count == 1 && *keys == kAXTrustedCheckOptionPrompt && *values == kCFBooleanTrue;
  return made<CFDictionaryRef>(asksForPrompt ? "with prompt" : "other dictionary");
}

EventTargetRef GetApplicationEventTarget() {
  return kApplicationTarget;
}

EventTargetRef GetEventDispatcherTarget() {
  return kDispatcherTarget;
}

OSStatus InstallEventHandler(EventTargetRef target, EventHandlerUPP handler, ItemCount typeCount,
                             const EventTypeSpec* types, void* userData, EventHandlerRef* ref) {
  std::string call = "InstallEventHandler on " + targetName(target);
  for (ItemCount i = 0; i < typeCount; ++i) {
    call += " " + letters(types[i].eventClass) + " " + number(types[i].eventKind);
  }
  note(call + (userData == nullptr ? "" : " with user data") + (ref == nullptr ? "" : " for ref"));
  if (apple().handlerStatus == noErr) {
    apple().handler = handler;
    apple().handlerUserData = userData;
  }
  return apple().handlerStatus;
}

OSStatus RegisterEventHotKey(UInt32 keyCode, UInt32 modifiers, EventHotKeyID hotKeyID,
                             EventTargetRef target, OptionBits options, EventHotKeyRef* ref) {
  note("RegisterEventHotKey " + number(keyCode) + " " + number(modifiers) + " " +
       letters(hotKeyID.signature) + " " + number(hotKeyID.id) + " on " + targetName(target) +
       " options " + number(options));
  if (apple().registrationStatus != noErr) return apple().registrationStatus;
  *ref = made<EventHotKeyRef>("hot key " + number(hotKeyID.id));
  return noErr;
}

OSStatus UnregisterEventHotKey(EventHotKeyRef ref) {
  note("UnregisterEventHotKey " + apple().nameOf(ref));
  apple().release(ref);
  return apple().unregistrationStatus;
}

OSStatus GetEventParameter(EventRef event, EventParamName name, EventParamType desiredType,
                           EventParamType* actualType, ByteCount bufferSize, ByteCount* actualSize,
                           void* data) {
  note("GetEventParameter " + apple().nameOf(event) + " " + letters(name) + " " +
       letters(desiredType) + (actualType == nullptr ? "" : " and its type") + " " +
       number(bufferSize) + (actualSize == nullptr ? "" : " and its size"));
  if (apple().parameterStatus == noErr && bufferSize == sizeof(EventHotKeyID)) {
    *static_cast<EventHotKeyID*>(data) = apple().parameter;
  }
  return apple().parameterStatus;
}

TISInputSourceRef TISCopyCurrentKeyboardInputSource() {
  note("TISCopyCurrentKeyboardInputSource");
  if (!apple().hasCurrentSource) return nullptr;
  return made<TISInputSourceRef>("current source");
}

TISInputSourceRef TISCopyCurrentASCIICapableKeyboardLayoutInputSource() {
  note("TISCopyCurrentASCIICapableKeyboardLayoutInputSource");
  if (!apple().hasFallbackSource) return nullptr;
  return made<TISInputSourceRef>("fallback source");
}

void* TISGetInputSourceProperty(TISInputSourceRef source, CFStringRef key) {
  const auto name = apple().nameOf(source);
  const bool isCurrent = name == "current source";
  note("TISGetInputSourceProperty " + name +
       (key == kTISPropertyUnicodeKeyLayoutData ? " layout data" : " something else"));
  if (!(isCurrent ? apple().currentSourceHasLayout : apple().fallbackSourceHasLayout)) {
    return nullptr;
  }
  return const_cast<FakeData*>(isCurrent ? kCurrentLayoutData : kFallbackLayoutData);
}

UInt8 LMGetKbdType() {
  constexpr UInt8 kKeyboardType = 43;
  return kKeyboardType;
}

OSStatus UCKeyTranslate(const UCKeyboardLayout* layout, UInt16 virtualKeyCode, UInt16 keyAction,
                        UInt32 modifierKeyState, UInt32 keyboardType, OptionBits options,
                        UInt32* deadKeyState, UniCharCount maxLength, UniCharCount* actualLength,
                        UniChar* units) {
  note("UCKeyTranslate by " + layoutName(layout) + " key " + number(virtualKeyCode) + " action " +
       number(keyAction) + " modifiers " + number(modifierKeyState) + " type " +
       number(keyboardType) + " options " + number(options) + " dead key state " +
       number(*deadKeyState) + " room " + number(maxLength));
  // The units beyond the length are undefined, and the length is set even on failure.
  std::fill_n(units, maxLength, UniChar{0xDC00});
  *actualLength = apple().translation.size();
  std::copy(apple().translation.begin(), apple().translation.end(), units);
  return apple().translationStatus;
}

}  // extern "C"

namespace seldial::platform::macos {

EventFields eventFields(const void* event) {
  note("eventFields " + apple().nameOf(event));
  return apple().fields;
}

void clearGeneralPasteboard() {
  note("clearContents");
  apple().pasteboard.reset();
}

std::optional<std::string> generalPasteboardString(const char* type) {
  note(std::string("stringForType ") + type);
  return apple().pasteboard;
}

void inAutoreleaseScope(const std::function<void()>& body) {
  note("open scope");
  body();
  note("close scope");
}

void logToSystem(const char* line) {
  note(std::string("NSLog ") + line);
}

void terminateSharedApplication(ApplicationDelegate* sender) {
  note(sender != nullptr ? "terminate: from the delegate" : "terminate: from nobody");
}

}  // namespace seldial::platform::macos
