#include "shortcut/Shortcut.h"

#include <algorithm>
#include <iterator>

#include "hotkey/QKHotKeyCenter.h"
#include "hotkey/QKKeyStrings.h"
#include "platform/VirtualKeys.h"

namespace seldial {
namespace {

using namespace platform;  // NOLINT: keys and modifiers by their short names

struct LabelledKey {
  VirtualKey key;
  const char* label;
};

/// Keys that are shown as a glyph, or not at all. All others are named by what they type.
constexpr LabelledKey kLabels[] = {
    {kVK_Return, "Return"},
    {kVK_Tab, "Tab"},
    {kVK_Space, "Space"},
    {kVK_Delete, "Backspace"},
    {kVK_Escape, "Escape"},
    {kVK_CapsLock, "Caps Lock"},
    {kVK_ANSI_KeypadClear, "Num Lock"},
    {kVK_VolumeUp, "Volume Up"},
    {kVK_VolumeDown, "Volume Down"},
    {kVK_Mute, "Mute"},
    {kVK_ANSI_KeypadEnter, "Enter"},
    {kVK_ContextualMenu, "Menu"},
    {kVK_Help, "Insert"},
    {kVK_Home, "Home"},
    {kVK_PageUp, "Page Up"},
    {kVK_ForwardDelete, "Delete"},
    {kVK_End, "End"},
    {kVK_PageDown, "Page Down"},
    {kVK_LeftArrow, "Left"},
    {kVK_RightArrow, "Right"},
    {kVK_DownArrow, "Down"},
    {kVK_UpArrow, "Up"},
};

constexpr VirtualKey kKeypadKeys[] = {
    kVK_ANSI_KeypadDecimal, kVK_ANSI_KeypadMultiply, kVK_ANSI_KeypadPlus, kVK_ANSI_KeypadDivide,
    kVK_ANSI_KeypadMinus,   kVK_ANSI_KeypadEquals,   kVK_ANSI_Keypad0,    kVK_ANSI_Keypad1,
    kVK_ANSI_Keypad2,       kVK_ANSI_Keypad3,        kVK_ANSI_Keypad4,    kVK_ANSI_Keypad5,
    kVK_ANSI_Keypad6,       kVK_ANSI_Keypad7,        kVK_ANSI_Keypad8,    kVK_ANSI_Keypad9,
    kVK_JIS_KeypadComma,
};

QString keyInWords(std::uint16_t keyCode, KeyboardLayout& layout) {
  const auto* const labelled =
      std::find_if(std::begin(kLabels), std::end(kLabels),
                   [=](const LabelledKey& entry) { return entry.key == keyCode; });
  if (labelled != std::end(kLabels)) return QString::fromLatin1(labelled->label);
  const QString typed = QString::fromStdString(QKStringFromKeyCode(keyCode, 0, layout)).toUpper();
  if (typed.isEmpty()) return QStringLiteral("key %1").arg(keyCode);
  const bool keypad =
      std::find(std::begin(kKeypadKeys), std::end(kKeypadKeys), keyCode) != std::end(kKeypadKeys);
  return keypad ? QStringLiteral("Keypad ") + typed : typed;
}

}  // namespace

QStringList keysInWords(const QKHotKey& hotKey, KeyboardLayout& layout) {
  QStringList words;
  for (const auto& modifier : kModifiers) {
    if ((hotKey.modifierFlags() & modifier.flag) != 0) words << QString::fromLatin1(modifier.label);
  }
  if (!hasOnlyModifiers(hotKey)) words << keyInWords(hotKey.keyCode(), layout);
  return words;
}

QString shortcutInWords(const QKHotKey& hotKey, KeyboardLayout& layout) {
  return keysInWords(hotKey, layout).join(QStringLiteral(" + "));
}

HotKey hotKeyOf(const QKHotKey& hotKey) {
  HotKey result;
  result.virtualKey = hotKey.keyCode();
  for (const auto& modifier : kModifiers) {
    result.modifierFlags |= hotKey.modifierFlags() & modifier.flag;
  }
  return result;
}

bool hasOnlyModifiers(const QKHotKey& hotKey) {
  return isModifierKey(hotKey.keyCode());
}

bool ShortcutTrial::isUsable(const QKHotKey& hotKey) {
  const auto center = QKHotKeyCenter::sharedHotKeyCenter();
  return center && center->canRegisterHotKeyWithKeyCode(hotKey.keyCode(), hotKey.modifierFlags());
}

ShortcutState ShortcutTrial::take(const std::shared_ptr<QKHotKey>& hotKey) {
  if (taken_ == hotKey) return hotKey ? ShortcutState::kFree : ShortcutState::kUnknown;
  giveBack();
  const auto center = QKHotKeyCenter::sharedHotKeyCenter();
  if (!hotKey || !center) return ShortcutState::kUnknown;
  if (!isUsable(*hotKey)) return ShortcutState::kUnusable;
  taken_ = center->registerHotKey(hotKey);
  return taken_ ? ShortcutState::kFree : ShortcutState::kHeld;
}

void ShortcutTrial::giveBack() {
  if (!taken_) return;
  QKHotKeyCenter::sharedHotKeyCenter()->unregisterHotKey(taken_);
  taken_.reset();
}

}  // namespace seldial
