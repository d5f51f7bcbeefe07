#pragma once

#import <Foundation/Foundation.h>

#include <string>

/// A display string (UTF-8) as hot key fields show it.
NSString* QKUpperCasedString(const std::string& displayString);
