// Hot key records: a key combination and the task or action that it invokes.
//
// A record does not depend on the desktop; QKHotKeyCenter registers it there. Everything here is
// for the main thread only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>

#include "platform/HotKeyEvents.h"
#include "platform/VirtualKeys.h"

namespace seldial {

/// The event that a hot key is invoked with. It is synthetic, because a desktop reports a hot key
/// and not a key event: its type is kKeyUp, it has no window and no characters, and its
/// modifierFlags are those still held.
using QKKeyEvent = platform::KeyEvent;

/// What a hot key runs when it is used.
using QKHotKeyTask = std::function<void(const QKKeyEvent&)>;

/// The name of an action. Empty means no action.
using QKAction = std::string;

/// An argument that is passed with an action. The code that registers it and the target agree on
/// its type.
using QKObject = std::shared_ptr<void>;

/// Receives the actions of hot keys.
class QKHotKeyTarget {
 public:
  virtual ~QKHotKeyTarget() = default;

  /// Whether perform() implements that action. perform() is never called for other actions.
  [[nodiscard]] virtual bool respondsTo(const QKAction& action) const = 0;

  /// Performs the action. `object` belongs to the record and may be null.
  virtual void perform(const QKAction& action, const QKKeyEvent& event, const QKObject& object) = 0;

  /// The target's name in QKHotKey::description().
  [[nodiscard]] virtual std::string description() const;
};

/// The record of one hot key: a virtual key code, modifier flags, and a task or an action of a
/// target. Two records with the same key code and flags are the same hot key, whatever they invoke.
///
/// When a record is destroyed, it asks the shared centre to unregister it. Like every
/// unregistration, this also removes an equal record from the registry.
class QKHotKey {
 public:
  /// A record that is not registered. `modifierFlags` are platform::ModifierFlag bits.
  static std::shared_ptr<QKHotKey> hotKeyWithKeyCode(std::uint16_t keyCode,
                                                     std::uint64_t modifierFlags,
                                                     QKHotKeyTask task);
  ~QKHotKey();
  QKHotKey(const QKHotKey&) = delete;
  QKHotKey& operator=(const QKHotKey&) = delete;

  /// Not owned: it must outlive the record's registration. Null when there is none.
  [[nodiscard]] QKHotKeyTarget* target() const { return target_; }
  /// The action for the target; empty if there is none.
  [[nodiscard]] const QKAction& action() const { return action_; }
  /// Passed to the target with the action; owned, may be null.
  [[nodiscard]] const QKObject& object() const { return object_; }
  /// Called when no target implements the action; may be empty.
  [[nodiscard]] const QKHotKeyTask& task() const { return task_; }
  /// A platform::VirtualKey.
  [[nodiscard]] std::uint16_t keyCode() const { return keyCode_; }
  /// platform::ModifierFlag bits.
  [[nodiscard]] std::uint64_t modifierFlags() const { return modifierFlags_; }

  /// The desktop's handle while the record is registered, nothing otherwise. Set by the centre.
  std::optional<platform::HotKeyRef> hotKeyRef;
  /// The identifier of the last registration, 0 before the first. Set by the centre.
  std::uint32_t hotKeyID = 0;

  /// Performs the action when the target implements it, otherwise runs the task, if any. Both may
  /// destroy the record.
  void invokeWithEvent(const QKKeyEvent& event) const;

  /// Key code, modifiers and what is invoked, in four lines for developers.
  [[nodiscard]] std::string description() const;
  /// Whether key code and flags are equal.
  [[nodiscard]] bool isEqual(const QKHotKey& other) const;
  /// A hash value; equal for records that are equal by isEqual().
  [[nodiscard]] std::size_t hash() const;

 private:
  friend class QKHotKeyCenter;
  QKHotKey() = default;

  QKHotKeyTarget* target_ = nullptr;
  QKAction action_;
  QKObject object_;
  QKHotKeyTask task_;
  std::uint16_t keyCode_ = 0;
  std::uint64_t modifierFlags_ = 0;
};

/// Hashes records, plain or shared, by hash().
struct QKHotKeyHash {
  using is_transparent = void;  ///< lets containers look up plain records
  /// A plain record.
  std::size_t operator()(const QKHotKey& hotKey) const { return hotKey.hash(); }
  /// A shared one, not null.
  std::size_t operator()(const std::shared_ptr<QKHotKey>& hotKey) const { return hotKey->hash(); }
};

/// Compares records, plain or shared, by isEqual().
struct QKHotKeyEqual {
  using is_transparent = void;  ///< lets containers look up plain records
  /// Whether both are the same hot key.
  template <class Left, class Right>
  bool operator()(const Left& left, const Right& right) const {
    return address(left)->isEqual(*address(right));
  }

 private:
  static const QKHotKey* address(const QKHotKey& hotKey) { return &hotKey; }
  static const QKHotKey* address(const std::shared_ptr<QKHotKey>& hotKey) { return hotKey.get(); }
};

/// Records, none of them null, at most one for each key code and flags.
using QKHotKeySet = std::unordered_set<std::shared_ptr<QKHotKey>, QKHotKeyHash, QKHotKeyEqual>;

/// The modifier bits of a registration (platform::HotKeyModifier) for modifier flags
/// (platform::ModifierFlag), Caps Lock included. All other bits are dropped. Any thread.
[[nodiscard]] std::uint32_t QKCarbonModifierFlagsFromCocoaModifierFlags(
    std::uint64_t modifierFlags);

}  // namespace seldial
