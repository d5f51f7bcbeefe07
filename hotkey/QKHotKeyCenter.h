#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "hotkey/QKHotKey.h"
#include "hotkey/QKHotKeySet.h"

namespace seldial {

/// The process-wide registry of hot keys: it owns the registered records, takes their combinations
/// from the desktop and invokes them. A hot key acts when it is released, not when it is pressed.
///
/// Records that are passed in are never null.
///
/// Only sharedHotKeyCenter() may be called from any thread, the rest on the main thread alone. What
/// a hot key invokes runs there too, and may itself register and unregister.
class QKHotKeyCenter {
 public:
  /// Whether a record is meant.
  using Test = std::function<bool(const QKHotKey&)>;

  /// Gives the shared centre its port, before the centre is first used. Another port, or null,
  /// takes effect for a centre in use as well; init() then connects it to that port.
  static void setHotKeyEvents(std::shared_ptr<platform::HotKeyEvents> port);

  /// The one centre, made on first use and never destroyed; null while it has no port.
  static std::shared_ptr<QKHotKeyCenter> sharedHotKeyCenter();

  QKHotKeyCenter(const QKHotKeyCenter&) = delete;
  QKHotKeyCenter& operator=(const QKHotKeyCenter&) = delete;

  /// Sets the centre up afresh on its port: the registry is empty and ids start at 1
  /// again. Nothing is unregistered, except that a record which nobody else owns is destroyed and
  /// so asks for it itself.
  void init();

  /// The registered record; null when one with this key code and flags is in the registry already
  /// or the desktop refuses.
  std::shared_ptr<QKHotKey> registerHotKeyWithKeyCode(std::uint16_t keyCode,
                                                      std::uint64_t modifierFlags,
                                                      QKHotKeyTask task);
  /// The same for a record that performs an action. The target is not owned: unregister the record
  /// before the target goes.
  std::shared_ptr<QKHotKey> registerHotKeyWithKeyCode(std::uint16_t keyCode,
                                                      std::uint64_t modifierFlags,
                                                      QKHotKeyTarget* target, QKAction action,
                                                      QKObject object);

  /// The given record, registered now or, when its equal is in the registry already, left as it
  /// is; null, with the record unchanged, when the desktop refuses.
  std::shared_ptr<QKHotKey> registerHotKey(const std::shared_ptr<QKHotKey>& hotKey);

  /// Gives the record's combination back, if it holds one, and drops the record or its equal from
  /// the registry.
  void unregisterHotKey(const std::shared_ptr<QKHotKey>& hotKey);

  /// Unregisters every member of the registry that passes the test.
  void unregisterHotKeysMatching(const Test& test);
  /// Those with that target; null means those without one.
  void unregisterHotKeysWithTarget(const QKHotKeyTarget* target);
  /// Those with that target and that action.
  void unregisterHotKeysWithTarget(const QKHotKeyTarget* target, const QKAction& action);
  /// The one with that key code and exactly these flags.
  void unregisterHotKeyWithKeyCode(std::uint16_t keyCode, std::uint64_t modifierFlags);
  /// Every member of the registry.
  void unregisterAllHotKeys();

  /// The members of the registry that pass the test.
  [[nodiscard]] QKHotKeySet hotKeysMatching(const Test& test) const;
  /// Whether the registry has one with that key code and exactly these flags.
  [[nodiscard]] bool hasRegisteredHotKeyWithKeyCode(std::uint16_t keyCode,
                                                    std::uint64_t modifierFlags) const;
  /// False when the desktop would refuse a hot key with that key code and these flags though nobody
  /// holds it.
  [[nodiscard]] bool canRegisterHotKeyWithKeyCode(std::uint16_t keyCode,
                                                  std::uint64_t modifierFlags) const;
  /// The members of the registry that hold a combination of the desktop.
  [[nodiscard]] QKHotKeySet registeredHotKeys() const;

 private:
  friend class QKHotKey;
  QKHotKeyCenter() = default;

  static std::shared_ptr<QKHotKeyCenter> makeCenter();
  static void hotKeyReleased(const platform::HotKeyReleased& released);
  void unregister(QKHotKey& hotKey);

  QKHotKeySet registry_;
  std::uint32_t nextHotKeyID_ = 1;
};

}  // namespace seldial
