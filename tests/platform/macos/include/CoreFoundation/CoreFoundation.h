// Of Core Foundation, what the port uses: declared from its public documentation.
#pragma once

using Boolean = unsigned char;
using UInt8 = unsigned char;
using UInt16 = unsigned short;
using SInt32 = signed int;
using UInt32 = unsigned int;
using CFIndex = long;

using CFTypeRef = const void*;
using CFStringRef = const struct FakeString*;
using CFDataRef = const struct FakeData*;

extern "C" {
void CFRelease(CFTypeRef object);
const UInt8* CFDataGetBytePtr(CFDataRef data);
}
