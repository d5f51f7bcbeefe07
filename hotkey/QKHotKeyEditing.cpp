#include "hotkey/QKHotKeyEditing.h"

#include <algorithm>
#include <string_view>

#include "hotkey/QKKeyStrings.h"
#include "platform/VirtualKeys.h"

namespace seldial {

namespace {

constexpr std::uint16_t kEscapeKey = 53;

/// What makes a combination of a key; caps lock does not.
constexpr std::uint64_t kModifiers =
    platform::kModifierFlagShift | platform::kModifierFlagControl | platform::kModifierFlagOption |
    platform::kModifierFlagCommand | platform::kModifierFlagFunction;

/// As UTF-8. The last one is what the Enter key of a keypad says on some desktops.
constexpr std::string_view kLineBreaks[] = {
    "\n", "\v", "\f", "\r", "\u0085", "\u2028", "\u2029", "\x03",
};

bool startsWithLineBreak(std::string_view characters) {
  return std::any_of(std::begin(kLineBreaks), std::end(kLineBreaks),
                     [=](std::string_view lineBreak) { return characters.starts_with(lineBreak); });
}

std::string displayString(const std::shared_ptr<QKHotKey>& hotKey) {
  return hotKey ? QKStringFromKeyCode(hotKey->keyCode(), hotKey->modifierFlags()) : std::string();
}

}  // namespace

void QKHotKeyEditing::setHotKeyField(const std::shared_ptr<QKHotKeyEditedField>& field) {
  hotKeyField_ = field;
  originalHotKey_ = field ? field->hotKey() : nullptr;
}

void QKHotKeyEditing::begin() {
  hasSeenKeyDown_ = false;
}

void QKHotKeyEditing::end() {
  setHotKeyField(nullptr);
}

void QKHotKeyEditing::processHotkeyEvent(const QKHotKeyEditingEvent& event) {
  const bool hasModifiers = (event.modifierFlags & kModifiers) != 0;
  if (event.type == QKHotKeyEditingEvent::kKeyDown) {
    hasSeenKeyDown_ = true;
    if (hasModifiers) {
      record(event);
    } else if (event.keyCode == kEscapeKey ||
               startsWithLineBreak(event.charactersIgnoringModifiers)) {
      finish(event.keyCode == kEscapeKey);
    }
  } else if (event.type == QKHotKeyEditingEvent::kFlagsChanged) {
    if (hasModifiers && !hasSeenKeyDown_) record(event);
  }
}

void QKHotKeyEditing::record(const QKHotKeyEditingEvent& event) {
  const auto field = hotKeyField_.lock();
  if (!field) return;
  const auto hotKey =
      QKHotKey::hotKeyWithKeyCode(event.keyCode, event.modifierFlags,
                                  originalHotKey_ ? originalHotKey_->task() : QKHotKeyTask());
  field->setHotKey(hotKey);
  field->setEditorString(displayString(hotKey));
  field->sendAction();
}

void QKHotKeyEditing::finish(bool restore) {
  const auto field = hotKeyField_.lock();
  if (!field) return;
  if (restore) {
    const auto original = originalHotKey_;
    field->setHotKey(original);
    field->setEditorString(displayString(original));
  }
  field->sendAction();
  field->resignFocus();
}

}  // namespace seldial
