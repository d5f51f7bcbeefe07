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
/// sharedHotKeyCenter() may be called on any thread, everything else on the main thread only. Tasks
/// and actions of hot keys also run on the main thread and may register and unregister hot keys.
class QKHotKeyCenter {
 public:
  /// Selects records.
  using Test = std::function<bool(const QKHotKey&)>;

  /// Sets the port of the shared centre; call this before the centre is first used. A later call
  /// with another port, or null, also affects a centre that is in use; init() then connects it to
  /// that port.
  static void setHotKeyEvents(std::shared_ptr<platform::HotKeyEvents> port);

  /// The shared centre, created on first use and never destroyed; null while it has no port.
  static std::shared_ptr<QKHotKeyCenter> sharedHotKeyCenter();

  QKHotKeyCenter(const QKHotKeyCenter&) = delete;
  QKHotKeyCenter& operator=(const QKHotKeyCenter&) = delete;

  /// Resets the centre on its port: the registry becomes empty, and ids start at 1. Nothing is
  /// unregistered explicitly, but records that have no other owner are destroyed, which unregisters
  /// them.
  void init();

  /// Creates and registers a record and returns it. Null if a record with this key code and flags
  /// is already registered or the desktop refuses.
  std::shared_ptr<QKHotKey> registerHotKeyWithKeyCode(std::uint16_t keyCode,
                                                      std::uint64_t modifierFlags,
                                                      QKHotKeyTask task);
  /// Registers a record that performs an action of a target; otherwise like the function above. The
  /// target is not owned: unregister the record before the target is destroyed.
  std::shared_ptr<QKHotKey> registerHotKeyWithKeyCode(std::uint16_t keyCode,
                                                      std::uint64_t modifierFlags,
                                                      QKHotKeyTarget* target, QKAction action,
                                                      QKObject object);

  /// Registers the record and returns it. If an equal record is already in the registry, nothing is
  /// registered and the given record is returned unchanged. Null, with the record unchanged, if the
  /// desktop refuses.
  std::shared_ptr<QKHotKey> registerHotKey(const std::shared_ptr<QKHotKey>& hotKey);

  /// Unregisters the record's combination, if it is registered, and removes the record or an equal
  /// one from the registry.
  void unregisterHotKey(const std::shared_ptr<QKHotKey>& hotKey);

  /// Unregisters every record in the registry that passes the test.
  void unregisterHotKeysMatching(const Test& test);
  /// Unregisters the records with that target; null means those without a target.
  void unregisterHotKeysWithTarget(const QKHotKeyTarget* target);
  /// Unregisters the records with that target and that action.
  void unregisterHotKeysWithTarget(const QKHotKeyTarget* target, const QKAction& action);
  /// Unregisters the record with that key code and exactly these flags.
  void unregisterHotKeyWithKeyCode(std::uint16_t keyCode, std::uint64_t modifierFlags);
  /// Unregisters all records.
  void unregisterAllHotKeys();

  /// The records in the registry that pass the test.
  [[nodiscard]] QKHotKeySet hotKeysMatching(const Test& test) const;
  /// Whether the registry contains a record with that key code and exactly these flags.
  [[nodiscard]] bool hasRegisteredHotKeyWithKeyCode(std::uint16_t keyCode,
                                                    std::uint64_t modifierFlags) const;
  /// False if the desktop would refuse a hot key with that key code and these flags even though no
  /// program holds it.
  [[nodiscard]] bool canRegisterHotKeyWithKeyCode(std::uint16_t keyCode,
                                                  std::uint64_t modifierFlags) const;
  /// The records whose combination is registered with the desktop.
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
