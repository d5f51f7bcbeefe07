// The part of Carbon that the port uses, declared from its public documentation: the hot keys of
// the Event Manager, the text input sources and the Unicode key layouts.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

using OSStatus = SInt32;
using OSType = UInt32;
using OptionBits = UInt32;
using ItemCount = unsigned long;
using ByteCount = unsigned long;
using UniChar = UInt16;
using UniCharCount = unsigned long;

enum { noErr = 0 };

// The Event Manager. Four-character codes are written as numbers.
using EventRef = struct FakeCarbonEvent*;
using EventTargetRef = struct FakeEventTarget*;
using EventHandlerRef = struct FakeEventHandler*;
using EventHandlerCallRef = struct FakeEventHandlerCall*;
using EventHotKeyRef = struct FakeHotKey*;
using EventParamName = OSType;
using EventParamType = OSType;
using EventHandlerUPP = OSStatus (*)(EventHandlerCallRef, EventRef, void*);

struct EventTypeSpec {
  OSType eventClass;
  UInt32 eventKind;
};
struct EventHotKeyID {
  OSType signature;
  UInt32 id;
};

enum : OSType {
  kEventClassKeyboard = 0x6B657962,      // keyb
  kEventParamDirectObject = 0x2D2D2D2D,  // ----
  typeEventHotKeyID = 0x686B6964,        // hkid
};
enum : UInt32 { kEventHotKeyReleased = 6 };

// Text input sources and key layouts.
using TISInputSourceRef = struct FakeInputSource*;
struct UCKeyboardLayout;
enum : UInt16 { kUCKeyActionDown = 0 };

extern "C" {
EventTargetRef GetApplicationEventTarget();
EventTargetRef GetEventDispatcherTarget();
OSStatus InstallEventHandler(EventTargetRef target, EventHandlerUPP handler, ItemCount typeCount,
                             const EventTypeSpec* types, void* userData, EventHandlerRef* ref);
OSStatus RegisterEventHotKey(UInt32 keyCode, UInt32 modifiers, EventHotKeyID hotKeyID,
                             EventTargetRef target, OptionBits options, EventHotKeyRef* ref);
OSStatus UnregisterEventHotKey(EventHotKeyRef ref);
OSStatus GetEventParameter(EventRef event, EventParamName name, EventParamType desiredType,
                           EventParamType* actualType, ByteCount bufferSize, ByteCount* actualSize,
                           void* data);

extern const CFStringRef kTISPropertyUnicodeKeyLayoutData;
TISInputSourceRef TISCopyCurrentKeyboardInputSource();
TISInputSourceRef TISCopyCurrentASCIICapableKeyboardLayoutInputSource();
void* TISGetInputSourceProperty(TISInputSourceRef source, CFStringRef key);
UInt8 LMGetKbdType();
OSStatus UCKeyTranslate(const UCKeyboardLayout* layout, UInt16 virtualKeyCode, UInt16 keyAction,
                        UInt32 modifierKeyState, UInt32 keyboardType, OptionBits options,
                        UInt32* deadKeyState, UniCharCount maxLength, UniCharCount* actualLength,
                        UniChar* units);
}
