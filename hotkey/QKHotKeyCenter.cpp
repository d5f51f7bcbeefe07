#include "hotkey/QKHotKeyCenter.h"

#include <utility>

#include "platform/Output.h"

namespace seldial {

namespace {

constexpr std::uint32_t kSignature = 0x68746B31;  // "htk1", the same for every hot key

/// Never destroyed, like the centre.
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
  // Never destroyed: a record that is destroyed while the process ends still uses it.
  static auto* const shared = new std::shared_ptr<QKHotKeyCenter>(makeCenter());
  return *shared;
}

void QKHotKeyCenter::init() {
  // Destroyed last: the destructors of the records use the centre.
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
  // The member may be a different record that equals the given one; it is removed too, on purpose.
  // It is extracted before it is destroyed, because its destructor unregisters it.
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
  if (named.size() > 1 && !hotKeyEvents()->logError("ERROR!")) platform::printError("ERROR!");
  if (named.empty()) return;
  const QKHotKey& hotKey = **named.begin();
  QKKeyEvent event = released.event;
  event.keyCode = hotKey.keyCode();
  // The record is not kept alive: what it invokes may register the combination again, and a record
  // destroyed after that would remove its successor from the registry.
  named.clear();
  hotKey.invokeWithEvent(event);
}

}  // namespace seldial
