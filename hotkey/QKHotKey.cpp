#include "hotkey/QKHotKey.h"

#include <array>
#include <cstdio>
#include <utility>

#include "hotkey/QKHotKeyCenter.h"

namespace seldial {

namespace {

std::string objectDescription(const char* className, const void* object) {
  std::array<char, 64> text{};
  (void)std::snprintf(text.data(), text.size(), "<%s: %p>", className, object);
  return text.data();
}

/// Caps Lock is not named, on purpose.
std::string flagsDescription(std::uint64_t flags) {
  constexpr platform::ModifierIndex kOrder[] = {
      platform::kControlModifier, platform::kCommandModifier, platform::kShiftModifier,
      platform::kOptionModifier};
  std::string names;
  for (const auto index : kOrder) {
    const auto& modifier = platform::kModifiers[index];
    if ((flags & modifier.flag) == 0) continue;
    if (!names.empty()) names += " | ";
    names += modifier.maskName;
  }
  return "(" + names + ")";
}

}  // namespace

std::string QKHotKeyTarget::description() const {
  return objectDescription("QKHotKeyTarget", this);
}

std::shared_ptr<QKHotKey> QKHotKey::hotKeyWithKeyCode(std::uint16_t keyCode,
                                                      std::uint64_t modifierFlags,
                                                      QKHotKeyTask task) {
  std::shared_ptr<QKHotKey> hotKey(new QKHotKey);
  hotKey->keyCode_ = keyCode;
  hotKey->modifierFlags_ = modifierFlags;
  hotKey->task_ = std::move(task);
  return hotKey;
}

QKHotKey::~QKHotKey() {
  if (const auto center = QKHotKeyCenter::sharedHotKeyCenter()) center->unregister(*this);
}

void QKHotKey::invokeWithEvent(const QKKeyEvent& event) const {
  if (target_ != nullptr && !action_.empty() && target_->respondsTo(action_)) {
    const auto action = action_;
    const auto object = object_;
    target_->perform(action, event, object);
  } else if (const auto task = task_) {
    task(event);
  }
}

std::string QKHotKey::description() const {
  const bool hasAction = target_ != nullptr && !action_.empty();
  const std::string invokes =
      hasAction ? "[" + target_->description() + " " + action_ + "]" : "(block)";
  return objectDescription("QKHotKey", this) + "\n\t(key: " + std::to_string(keyCode_) +
         "\n\tflags: " + flagsDescription(modifierFlags_) + "\n\tinvokes: " + invokes + ")";
}

bool QKHotKey::isEqual(const QKHotKey& other) const {
  return keyCode_ == other.keyCode_ && modifierFlags_ == other.modifierFlags_;
}

std::size_t QKHotKey::hash() const {
  return static_cast<std::size_t>(modifierFlags_ ^ keyCode_);
}

std::uint32_t QKCarbonModifierFlagsFromCocoaModifierFlags(std::uint64_t modifierFlags) {
  std::uint32_t bits =
      (modifierFlags & platform::kModifierFlagCapsLock) != 0 ? platform::kHotKeyAlphaLock : 0U;
  for (const auto& modifier : platform::kModifiers) {
    if ((modifierFlags & modifier.flag) != 0) bits |= modifier.hotKeyModifier;
  }
  return bits;
}

}  // namespace seldial
