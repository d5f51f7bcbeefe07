// The part of Application Services that the port uses, declared from its public documentation.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CoreGraphics.h>

extern "C" {
extern CFStringRef kAXTrustedCheckOptionPrompt;
Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options);
}

// Replaces the check of the running system's version.
bool systemIsAtLeast(const char* version);
#define __builtin_available(version, others) systemIsAtLeast(#version)
