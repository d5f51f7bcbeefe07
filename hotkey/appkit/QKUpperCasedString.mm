#import "hotkey/appkit/QKUpperCasedString.h"

NSString* QKUpperCasedString(const std::string& displayString) {
  return @(displayString.c_str()).uppercaseString;
}
