#include "platform/linux/KeyTable.h"
#include "platform/x11/Keyboards.h"

namespace seldial::platform::x11 {
namespace {

constexpr unsigned kLockBit = 1U << XCB_MAP_INDEX_LOCK;

/// The virtual key code of a key at `position` that has the modifiers in `flags`: the position's
/// own code if that is a key of one of them, otherwise the left key of the first.
std::uint16_t modifierKeyCode(std::uint16_t position, std::uint64_t flags) {
  const bool isLock = (flags & kModifierFlagCapsLock) != 0;
  if (isLock && position == kVK_CapsLock) return position;
  std::uint16_t left = position;
  for (const auto& modifier : kModifiers) {
    if ((flags & modifier.flag) == 0) continue;
    if (position == modifier.leftKey || position == modifier.rightKey) return position;
    if (left == position) left = modifier.leftKey;
  }
  return isLock && left == position ? std::uint16_t{kVK_CapsLock} : left;
}

}  // namespace

void RecordedKeys::begin() {
  held_.reset();
  if (!keyboards_.load()) return;
  const auto down = keyboards_.down();
  held_ = down.physical | down.typed;
}

std::optional<KeyEvent> RecordedKeys::read(std::uint32_t key, std::uint32_t state, bool pressed) {
  const auto position = linux_port::virtualKeyAtPosition(key);
  if (!position) return {};
  if (key < held_.size()) held_.set(key, pressed);
  const unsigned modifiers = modifiersOf(key);
  KeyEvent event;
  if (modifiers == 0) {
    event.type = pressed ? KeyEvent::kKeyDown : KeyEvent::kKeyUp;
    event.keyCode = *position;
    event.modifierFlags = flagsFor(state);
    if (setsFunctionFlag(*position)) event.modifierFlags |= kModifierFlagFunction;
    return event;
  }
  if ((modifiers & kLockBit) != 0 && !pressed) return {};
  event.type = KeyEvent::kFlagsChanged;
  event.keyCode = modifierKeyCode(*position, flagsFor(modifiers));
  event.modifierFlags = flagsFor(stateAfter(state, modifiers, pressed));
  return event;
}

/// The modifier bits of the key. Of the locks, only Caps Lock counts as a modifier; the others are
/// ordinary keys.
unsigned RecordedKeys::modifiersOf(std::uint32_t key) const {
  const auto& map = keyboards_.map();
  unsigned modifiers = 0;
  for (std::size_t bit = 0; key < held_.size() && bit < map.modifierKeys.size(); ++bit) {
    if (map.modifierKeys[bit][key]) modifiers |= 1U << bit;
  }
  return modifiers & (~unsigned{map.masks.locks} | kLockBit);
}

unsigned RecordedKeys::modifiersOfHeldKeys() const {
  unsigned modifiers = 0;
  for (std::uint32_t key = 0; key < held_.size(); ++key) {
    if (held_[key]) modifiers |= modifiersOf(key);
  }
  return modifiers;
}

unsigned RecordedKeys::stateAfter(unsigned state, unsigned modifiers, bool pressed) const {
  if ((modifiers & kLockBit) != 0) return state ^ kLockBit;
  return pressed ? state | modifiers : state & ~(modifiers & ~modifiersOfHeldKeys());
}

std::uint64_t RecordedKeys::flagsFor(unsigned state) const {
  const std::uint64_t flags = keyboards_.map().masks.flagsFor(state);
  return (state & kLockBit) != 0 ? flags | kModifierFlagCapsLock : flags;
}

}  // namespace seldial::platform::x11
