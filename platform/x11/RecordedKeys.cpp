#include "platform/x11/RecordedKeys.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/VirtualKeys.h"
#include "platform/x11/KeyTable.h"

namespace seldial::platform::x11 {
namespace {

constexpr unsigned kLockBit = 1U << XCB_MAP_INDEX_LOCK;

/// Where a modifier's keys lie, as virtual key codes.
struct Places {
  std::uint64_t flag;
  std::uint16_t left;
  std::uint16_t right;
};

constexpr Places kPlaces[] = {{kModifierFlagControl, 59, 62},
                              {kModifierFlagOption, 58, 61},
                              {kModifierFlagShift, 56, 60},
                              {kModifierFlagCommand, 55, 54},
                              {kModifierFlagCapsLock, 57, 57}};

/// F1 to F20; Help, Home, Page Up, Delete, End, Page Down and the arrows.
constexpr std::uint16_t kFunctionKeys[] = {122, 120, 99,  118, 96,  97,  98,  100, 101, 109,
                                           103, 111, 105, 107, 113, 106, 64,  79,  80,  90,
                                           114, 115, 116, 117, 119, 121, 123, 124, 125, 126};

std::uint64_t functionFlag(std::uint16_t keyCode) {
  const bool function = std::find(std::begin(kFunctionKeys), std::end(kFunctionKeys), keyCode) !=
                        std::end(kFunctionKeys);
  return function ? std::uint64_t{kModifierFlagFunction} : 0;
}

/// The code of a key that lies at `position` and carries the modifiers in `flags`.
std::uint16_t modifierCode(std::uint16_t position, std::uint64_t flags) {
  std::uint16_t left = position;
  for (const auto& places : kPlaces) {
    if ((flags & places.flag) == 0) continue;
    if (position == places.left || position == places.right) return position;
    if (left == position) left = places.left;
  }
  return left;
}

}  // namespace

void RecordedKeys::begin() {
  held_.reset();
  if (!keyboards_.load()) return;
  const auto down = keyboards_.down();
  held_ = down.physical | down.typed;
}

std::optional<RecordedKey> RecordedKeys::read(const HardwareKeyEvent& event) {
  const auto position = virtualKeyAtPosition(event.key);
  if (!position) return {};
  if (event.key < held_.size()) held_.set(event.key, event.pressed);
  const unsigned carried = carriedBy(event.key);
  if (carried == 0) {
    return RecordedKey{*position, flagsFor(event.state) | functionFlag(*position), false};
  }
  if ((carried & kLockBit) != 0 && !event.pressed) return {};
  return RecordedKey{modifierCode(*position, flagsFor(carried)),
                     flagsFor(stateAfter(event, carried)), true};
}

/// The bits of the modifiers that the key carries. Of the locks, CapsLock alone is a modifier of
/// hot keys; the others are keys like any other.
unsigned RecordedKeys::carriedBy(std::uint32_t key) const {
  const auto& map = keyboards_.map();
  const unsigned keys = ~unsigned{map.masks.locks} | kLockBit;
  unsigned carried = 0;
  for (std::size_t bit = 0; key < held_.size() && bit < map.carriers.size(); ++bit) {
    if (map.carriers[bit][key]) carried |= 1U << bit;
  }
  return carried & keys;
}

unsigned RecordedKeys::carriedByHeldKeys() const {
  unsigned carried = 0;
  for (std::uint32_t key = 0; key < held_.size(); ++key) {
    if (held_[key]) carried |= carriedBy(key);
  }
  return carried;
}

unsigned RecordedKeys::stateAfter(const HardwareKeyEvent& event, unsigned carried) const {
  if ((carried & kLockBit) != 0) return event.state ^ kLockBit;
  if (event.pressed) return event.state | carried;
  return event.state & ~(carried & ~carriedByHeldKeys());
}

std::uint64_t RecordedKeys::flagsFor(unsigned state) const {
  const bool capsLock = (state & kLockBit) != 0;
  return x11::flagsFor(keyboards_.map().masks, state) |
         (capsLock ? std::uint64_t{kModifierFlagCapsLock} : 0);
}

}  // namespace seldial::platform::x11
