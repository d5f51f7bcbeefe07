#include "shortcut/ShortcutWords.h"

#include <QStringList>
#include <algorithm>
#include <iterator>

#include "hotkey/QKKeyStrings.h"
#include "platform/VirtualKeys.h"

namespace seldial {
namespace {

struct NamedKey {
  std::uint16_t keyCode;
  const char* name;
};

/// Keys that are shown as a glyph, or as nothing at all. All others say what they are.
constexpr NamedKey kNames[] = {
    {36, "Return"},    {48, "Tab"},      {49, "Space"},      {51, "Backspace"},   {53, "Escape"},
    {57, "Caps Lock"}, {71, "Num Lock"}, {72, "Volume Up"},  {73, "Volume Down"}, {74, "Mute"},
    {76, "Enter"},     {110, "Menu"},    {114, "Insert"},    {115, "Home"},       {116, "Page Up"},
    {117, "Delete"},   {119, "End"},     {121, "Page Down"}, {123, "Left"},       {124, "Right"},
    {125, "Down"},     {126, "Up"},
};

struct FlaggedModifier {
  std::uint64_t flag;
  bool HotKey::*member;
  const char* name;
};

constexpr FlaggedModifier kModifiers[] = {
    {platform::kModifierFlagControl, &HotKey::ctrl, "Ctrl"},
    {platform::kModifierFlagOption, &HotKey::alt, "Alt"},
    {platform::kModifierFlagShift, &HotKey::shift, "Shift"},
    {platform::kModifierFlagCommand, &HotKey::command, "Super"},
};

/// Both Command, Shift, Option and Control keys, CapsLock among them, and the function key.
constexpr std::uint16_t kFirstModifierKey = 54;
constexpr std::uint16_t kLastModifierKey = 63;
constexpr std::uint16_t kCapsLockKey = 57;  // an ordinary key, where the layout makes it one

/// Within them lie keys of other kinds too, all of which have names.
constexpr std::uint16_t kFirstKeypadKey = 65;
constexpr std::uint16_t kLastKeypadKey = 92;

QString keyInWords(std::uint16_t keyCode) {
  const auto* const named = std::find_if(std::begin(kNames), std::end(kNames),
                                         [=](const auto& key) { return key.keyCode == keyCode; });
  if (named != std::end(kNames)) return QString::fromLatin1(named->name);
  const QString says = QString::fromStdString(QKStringFromKeyCode(keyCode, 0)).toUpper();
  if (says.isEmpty()) return QStringLiteral("key %1").arg(keyCode);
  const bool keypad =
      keyCode >= kFirstKeypadKey && keyCode <= kLastKeypadKey && !says.startsWith(QLatin1Char('F'));
  return keypad ? QStringLiteral("Keypad ") + says : says;
}

}  // namespace

QString shortcutInWords(const QKHotKey& hotKey) {
  QStringList words;
  for (const auto& modifier : kModifiers) {
    if ((hotKey.modifierFlags() & modifier.flag) != 0) words << QString::fromLatin1(modifier.name);
  }
  if (!hasOnlyModifiers(hotKey)) words << keyInWords(hotKey.keyCode());
  return words.join(QStringLiteral(" + "));
}

HotKey describedHotKey(const QKHotKey& hotKey) {
  HotKey described;
  described.virtualKey = hotKey.keyCode();
  for (const auto& modifier : kModifiers) {
    described.*modifier.member = (hotKey.modifierFlags() & modifier.flag) != 0;
  }
  return described;
}

std::uint64_t modifierFlagsOf(const HotKey& hotKey) {
  std::uint64_t flags = 0;
  for (const auto& modifier : kModifiers) {
    if (hotKey.*modifier.member) flags |= modifier.flag;
  }
  return flags;
}

bool hasOnlyModifiers(const QKHotKey& hotKey) {
  return hotKey.keyCode() >= kFirstModifierKey && hotKey.keyCode() <= kLastModifierKey &&
         hotKey.keyCode() != kCapsLockKey;
}

}  // namespace seldial
