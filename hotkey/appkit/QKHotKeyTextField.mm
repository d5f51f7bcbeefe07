#import "hotkey/appkit/QKHotKeyTextField.h"

#include <utility>

#include "hotkey/QKKeyStrings.h"
#import "hotkey/appkit/QKHotKeyTextFieldCell.h"
#import "hotkey/appkit/QKUpperCasedString.h"

@implementation QKHotKeyTextField

+ (Class)cellClass {
  return [QKHotKeyTextFieldCell class];
}

- (void)setHotKey:(std::shared_ptr<seldial::QKHotKey>)hotKey {
  if (hotKey == _hotKey) return;
  _hotKey = std::move(hotKey);
  [super setStringValue:_hotKey ? QKUpperCasedString(seldial::QKStringFromKeyCode(
                                      _hotKey->keyCode(), _hotKey->modifierFlags()))
                                : @""];
}

- (void)setStringValue:(NSString*)string {
  NSLog(@"-[QKHotKeyTextField setStringValue:] is not what you want. "
        @"Use -[QKHotKeyTextField setHotKey:] instead.");
  [super setStringValue:string];
}

- (NSString*)stringValue {
  NSLog(@"-[QKHotKeyTextField stringValue] is not what you want. "
        @"Use -[QKHotKeyTextField hotKey] instead.");
  return [super stringValue];
}

@end
