// The part of Application Services that the port uses, declared from its public documentation.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CoreGraphics.h>

extern "C" {
extern CFStringRef kAXTrustedCheckOptionPrompt;
Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options);
}

// Stands for the question to the running system, of which the tests choose the version.
bool systemIsAtLeast(const char* version);
#define __builtin_available(version, others) systemIsAtLeast(#version)
