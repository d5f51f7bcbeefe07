// The part of Core Graphics that the port uses, declared from its public documentation.
#pragma once

#include <cstdint>

using CGEventRef = struct FakeEvent*;
using CGEventSourceRef = struct FakeEventSource*;
using CGKeyCode = std::uint16_t;

enum CGEventSourceStateID : std::int32_t { kCGEventSourceStateHIDSystemState = 1 };
using CGEventFlags = std::uint64_t;
enum : CGEventFlags { kCGEventFlagMaskCommand = 0x100000 };
enum CGEventTapLocation : std::uint32_t { kCGHIDEventTap = 0 };

extern "C" {
CGEventSourceRef CGEventSourceCreate(CGEventSourceStateID stateID);
CGEventRef CGEventCreateKeyboardEvent(CGEventSourceRef source, CGKeyCode virtualKey, bool keyDown);
void CGEventSetFlags(CGEventRef event, CGEventFlags flags);
void CGEventPost(CGEventTapLocation tap, CGEventRef event);
bool CGRequestPostEventAccess();
}
