#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "hotkey/QKHotKey.h"

namespace seldial {

/// The process-wide registry of hot keys. It owns the registered records, registers their
/// combinations with the desktop and invokes them. A hot key acts when it is released, not when it
/// is pressed.
///
/// Records passed in must not be null.
///
/// sharedHotKeyCenter() may be called on any thread, everything else on the main thread only. What
/// a hot key invokes runs there too, and may itself register and unregister.
class QKHotKeyCenter {
 public:
  /// Whether a record is one of those that are wanted.
  using Test = std::function<bool(const QKHotKey&)>;

  /// Gives the shared centre its port, before the centre is first used. Another port, or null,
  /// takes effect for a centre in use as well; init() then connects it to that port.
  static void setHotKeyEvents(std::shared_ptr<platform::HotKeyEvents> port);

  /// The one centre, made on first use and never destroyed; null while it has no port.
  static std::shared_ptr<QKHotKeyCenter> sharedHotKeyCenter();

  QKHotKeyCenter(const QKHotKeyCenter&) = delete;
  QKHotKeyCenter& operator=(const QKHotKeyCenter&) = delete;

  /// Sets the centre up afresh on its port: an empty registry, ids from 1. It unregisters nothing
  /// itself; records that nobody else owns are destroyed, which unregisters them.
  void init();

  /// The registered record; null when one with this key code and flags is in the registry already
  /// or the desktop refuses.
  std::shared_ptr<QKHotKey> registerHotKeyWithKeyCode(std::uint16_t keyCode,
                                                      std::uint64_t modifierFlags,
                                                      QKHotKeyTask task);
  /// Registers a record that performs an action of a target; otherwise like the function above. The
  /// target is not owned: unregister the record before the target is destroyed.
  std::shared_ptr<QKHotKey> registerHotKeyWithKeyCode(std::uint16_t keyCode,
                                                      std::uint64_t modifierFlags,
                                                      QKHotKeyTarget* target, QKAction action,
                                                      QKObject object);

  /// Registers the record and returns it. When its equal is in the registry already, nothing is
  /// registered and the record is returned as it is. Null, with the record unchanged, when the
  /// desktop refuses.
  std::shared_ptr<QKHotKey> registerHotKey(const std::shared_ptr<QKHotKey>& hotKey);

  /// Releases the record's combination, if it holds one, and removes the record or its equal from
  /// the registry.
  void unregisterHotKey(const std::shared_ptr<QKHotKey>& hotKey);

  /// Unregisters every member of the registry that passes the test.
  void unregisterHotKeysMatching(const Test& test);
  /// Unregisters the members with that target; null stands for those without one.
  void unregisterHotKeysWithTarget(const QKHotKeyTarget* target);
  /// Unregisters the members with that target and that action.
  void unregisterHotKeysWithTarget(const QKHotKeyTarget* target, const QKAction& action);
  /// Unregisters the member with that key code and exactly these flags.
  void unregisterHotKeyWithKeyCode(std::uint16_t keyCode, std::uint64_t modifierFlags);
  /// Unregisters every member.
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
