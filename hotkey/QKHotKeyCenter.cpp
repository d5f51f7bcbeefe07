#include "hotkey/QKHotKeyCenter.h"

#include <cstdio>
#include <utility>

#include "hotkey/QKModifierFlags.h"
#include "platform/HotKeyEvents.h"

namespace seldial {

namespace {

constexpr std::uint32_t kSignature = 0x68746B31;  // "htk1", the same for every hot key

QKKeyEvent keyUpEvent(const platform::HotKeyReleased& released, const QKHotKey& hotKey) {
  QKKeyEvent event;
  event.locationX = released.locationX;
  event.locationY = released.locationY;
  event.modifierFlags = released.modifierFlags;
  event.timestamp = released.timestamp;
  event.keyCode = hotKey.keyCode();
  return event;
}

/// Never destroyed, as the centre.
std::shared_ptr<platform::HotKeyEvents>& hotKeyEvents() {
  static auto* const port = new std::shared_ptr<platform::HotKeyEvents>;
  return *port;
}

}  // namespace

void QKHotKeyCenter::setHotKeyEvents(std::shared_ptr<platform::HotKeyEvents> port) {
  hotKeyEvents() = std::move(port);
}

std::shared_ptr<QKHotKeyCenter> QKHotKeyCenter::makeCenter() {
  std::shared_ptr<QKHotKeyCenter> center(new QKHotKeyCenter);
  center->init();
  return center;
}

std::shared_ptr<QKHotKeyCenter> QKHotKeyCenter::sharedHotKeyCenter() {
  if (!hotKeyEvents()) return nullptr;
  // Never destroyed: a record that is destroyed while the process ends still asks for it.
  static auto* const shared = new std::shared_ptr<QKHotKeyCenter>(makeCenter());
  return *shared;
}

void QKHotKeyCenter::init() {
  // Dropped last: its records look at the centre while they are destroyed.
  const QKHotKeySet before = std::exchange(registry_, {});
  nextHotKeyID_ = 1;
  if (const auto port = hotKeyEvents()) port->installReleasedHandler(hotKeyReleased);
}

std::shared_ptr<QKHotKey> QKHotKeyCenter::registerHotKeyWithKeyCode(std::uint16_t keyCode,
                                                                    std::uint64_t modifierFlags,
                                                                    QKHotKeyTask task) {
  if (hasRegisteredHotKeyWithKeyCode(keyCode, modifierFlags)) return nullptr;
  return registerHotKey(QKHotKey::hotKeyWithKeyCode(keyCode, modifierFlags, std::move(task)));
}

std::shared_ptr<QKHotKey> QKHotKeyCenter::registerHotKeyWithKeyCode(std::uint16_t keyCode,
                                                                    std::uint64_t modifierFlags,
                                                                    QKHotKeyTarget* target,
                                                                    QKAction action,
                                                                    QKObject object) {
  if (hasRegisteredHotKeyWithKeyCode(keyCode, modifierFlags)) return nullptr;
  const auto hotKey = QKHotKey::hotKeyWithKeyCode(keyCode, modifierFlags, nullptr);
  hotKey->target_ = target;
  hotKey->action_ = std::move(action);
  hotKey->object_ = std::move(object);
  return registerHotKey(hotKey);
}

std::shared_ptr<QKHotKey> QKHotKeyCenter::registerHotKey(const std::shared_ptr<QKHotKey>& hotKey) {
  if (registry_.contains(hotKey)) return hotKey;
  const auto port = hotKeyEvents();
  if (!port) return nullptr;
  const auto ref = port->registerHotKey(
      hotKey->keyCode(), QKCarbonModifierFlagsFromCocoaModifierFlags(hotKey->modifierFlags()),
      {kSignature, nextHotKeyID_});
  if (!ref) return nullptr;
  hotKey->hotKeyRef = ref;
  hotKey->hotKeyID = nextHotKeyID_++;
  registry_.insert(hotKey);
  return hotKey;
}

void QKHotKeyCenter::unregisterHotKey(const std::shared_ptr<QKHotKey>& hotKey) {
  unregister(*hotKey);
}

void QKHotKeyCenter::unregister(QKHotKey& hotKey) {
  const auto port = hotKeyEvents();
  if (hotKey.hotKeyRef && port) port->unregisterHotKey(*hotKey.hotKeyRef);
  hotKey.hotKeyRef.reset();
  const auto member = registry_.find(hotKey);
  if (member == registry_.end()) return;
  // The member need not be the given record: its equal goes too, on purpose. Taken out first and
  // destroyed after: a member that dies unregisters itself.
  const auto dropped = registry_.extract(member);
}

void QKHotKeyCenter::unregisterHotKeysMatching(const Test& test) {
  for (const auto& hotKey : hotKeysMatching(test)) unregisterHotKey(hotKey);
}

void QKHotKeyCenter::unregisterHotKeysWithTarget(const QKHotKeyTarget* target) {
  unregisterHotKeysMatching([target](const QKHotKey& hotKey) { return hotKey.target() == target; });
}

void QKHotKeyCenter::unregisterHotKeysWithTarget(const QKHotKeyTarget* target,
                                                 const QKAction& action) {
  unregisterHotKeysMatching([target, &action](const QKHotKey& hotKey) {
    return hotKey.target() == target && hotKey.action() == action;
  });
}

void QKHotKeyCenter::unregisterHotKeyWithKeyCode(std::uint16_t keyCode,
                                                 std::uint64_t modifierFlags) {
  unregisterHotKeysMatching([=](const QKHotKey& hotKey) {
    return hotKey.keyCode() == keyCode && hotKey.modifierFlags() == modifierFlags;
  });
}

void QKHotKeyCenter::unregisterAllHotKeys() {
  unregisterHotKeysMatching([](const QKHotKey& /*hotKey*/) { return true; });
}

QKHotKeySet QKHotKeyCenter::hotKeysMatching(const Test& test) const {
  QKHotKeySet matching;
  for (const auto& hotKey : registry_) {
    if (test(*hotKey)) matching.insert(hotKey);
  }
  return matching;
}

bool QKHotKeyCenter::hasRegisteredHotKeyWithKeyCode(std::uint16_t keyCode,
                                                    std::uint64_t modifierFlags) const {
  return !hotKeysMatching([=](const QKHotKey& hotKey) {
            return hotKey.keyCode() == keyCode && hotKey.modifierFlags() == modifierFlags;
          }).empty();
}

bool QKHotKeyCenter::canRegisterHotKeyWithKeyCode(std::uint16_t keyCode,
                                                  std::uint64_t modifierFlags) const {
  const auto port = hotKeyEvents();
  return port &&
         port->canBeHotKey(keyCode, QKCarbonModifierFlagsFromCocoaModifierFlags(modifierFlags));
}

QKHotKeySet QKHotKeyCenter::registeredHotKeys() const {
  return hotKeysMatching([](const QKHotKey& hotKey) { return hotKey.hotKeyRef.has_value(); });
}

void QKHotKeyCenter::hotKeyReleased(const platform::HotKeyReleased& released) {
  const auto center = sharedHotKeyCenter();
  if (!center) return;
  auto named = center->hotKeysMatching(
      [&](const QKHotKey& hotKey) { return hotKey.hotKeyID == released.hotKeyID.id; });
  if (named.size() > 1) (void)std::fputs("ERROR!\n", stderr);
  if (named.empty()) return;
  const QKHotKey& hotKey = **named.begin();
  const auto event = keyUpEvent(released, hotKey);
  // Not kept alive: what it invokes may take the combination anew, and if it died after that, it
  // would drop its successor from the registry.
  named.clear();
  hotKey.invokeWithEvent(event);
}

}  // namespace seldial
