// The part of Core Foundation that the port uses, declared from its public documentation.
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
using CFAllocatorRef = const struct FakeAllocator*;
using CFBooleanRef = const struct FakeBoolean*;
using CFDictionaryRef = const struct FakeDictionary*;
struct CFDictionaryKeyCallBacks {};
struct CFDictionaryValueCallBacks {};

extern "C" {
void CFRelease(CFTypeRef object);
const UInt8* CFDataGetBytePtr(CFDataRef data);

extern const CFBooleanRef kCFBooleanTrue;
extern const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks;
extern const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks;
CFDictionaryRef CFDictionaryCreate(CFAllocatorRef allocator, const void** keys, const void** values,
                                   CFIndex count, const CFDictionaryKeyCallBacks* keyCallBacks,
                                   const CFDictionaryValueCallBacks* valueCallBacks);
}
