#include "shortcut/ShortcutTrial.h"

#include "hotkey/QKHotKeyCenter.h"

namespace seldial {

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
