#include "hotkey/QKHotKeyEditing.h"

#include <algorithm>
#include <string_view>

namespace seldial {

namespace {

using platform::KeyEvent;

/// An event with one of these has modifiers. Caps Lock does not count.
constexpr std::uint64_t kModifierBits =
    platform::kModifierFlagShift | platform::kModifierFlagControl | platform::kModifierFlagOption |
    platform::kModifierFlagCommand | platform::kModifierFlagFunction;
static_assert(kModifierBits == 0x9E0000);

/// The Unicode newline characters, and U+0003, which the keypad's Enter key types on some desktops.
/// UTF-8.
constexpr std::string_view kLineBreaks[] = {
    "\n", "\v", "\f", "\r", "\u0085", "\u2028", "\u2029", "\x03",
};

bool startsWithLineBreak(std::string_view characters) {
  return std::any_of(std::begin(kLineBreaks), std::end(kLineBreaks),
                     [=](std::string_view lineBreak) { return characters.starts_with(lineBreak); });
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

void QKHotKeyEditing::processHotkeyEvent(const KeyEvent& event) {
  const bool hasModifiers = (event.modifierFlags & kModifierBits) != 0;
  if (event.type == KeyEvent::kKeyDown) {
    hasSeenKeyDown_ = true;
    if (hasModifiers) {
      record(event);
    } else if (event.keyCode == platform::kVK_Escape) {
      finish(true);
    } else if (startsWithLineBreak(event.charactersIgnoringModifiers)) {
      finish(false);
    }
  } else if (event.type == KeyEvent::kFlagsChanged) {
    if (hasModifiers && !hasSeenKeyDown_) record(event);
  }
}

void QKHotKeyEditing::record(const KeyEvent& event) {
  const auto field = hotKeyField_.lock();
  if (!field) return;
  const auto hotKey =
      QKHotKey::hotKeyWithKeyCode(event.keyCode, event.modifierFlags,
                                  originalHotKey_ ? originalHotKey_->task() : QKHotKeyTask());
  field->setHotKey(hotKey);
  field->showInEditor(hotKey);
  field->sendAction();
}

void QKHotKeyEditing::finish(bool restore) {
  const auto field = hotKeyField_.lock();
  if (!field) return;
  if (restore) {
    const auto original = originalHotKey_;
    field->setHotKey(original);
    field->showInEditor(original);
  }
  field->sendAction();
  field->resignFocus();
}

}  // namespace seldial
