#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "hotkey/QKHotKeyTarget.h"
#include "hotkey/QKKeyEvent.h"
#include "platform/HotKeyEvents.h"

namespace seldial {

/// What a hot key runs when it is used.
using QKHotKeyTask = std::function<void(const QKKeyEvent&)>;

/// The record of one hot key: a virtual key code, modifier flags (platform::ModifierFlag values)
/// and what to invoke, a task or an action of a target. It is registered by QKHotKeyCenter, and two
/// records with the same key code and flags are the same hot key, whatever they invoke.
///
/// Main thread only. A record that is destroyed asks the shared centre to unregister it; as for
/// every unregistration, that drops an equal record from the registry too.
class QKHotKey {
 public:
  /// A record that is not registered.
  static std::shared_ptr<QKHotKey> hotKeyWithKeyCode(std::uint16_t keyCode,
                                                     std::uint64_t modifierFlags,
                                                     QKHotKeyTask task);
  ~QKHotKey();
  QKHotKey(const QKHotKey&) = delete;
  QKHotKey& operator=(const QKHotKey&) = delete;

  /// Not owned: it must outlive the record's registration.
  [[nodiscard]] QKHotKeyTarget* target() const { return target_; }
  /// What the target is to do; empty when there is none.
  [[nodiscard]] const QKAction& action() const { return action_; }
  /// Handed to the target with the action; owned, may be null.
  [[nodiscard]] const QKObject& object() const { return object_; }
  /// Called when there is no target that responds to the action.
  [[nodiscard]] const QKHotKeyTask& task() const { return task_; }
  /// A virtual key code.
  [[nodiscard]] std::uint16_t keyCode() const { return keyCode_; }
  /// platform::ModifierFlag values.
  [[nodiscard]] std::uint64_t modifierFlags() const { return modifierFlags_; }

  /// The port's handle while the record is registered, nothing otherwise.
  std::optional<platform::HotKeyRef> hotKeyRef;
  /// The identifier that the record was last registered under, 0 before.
  std::uint32_t hotKeyID = 0;

  /// Performs the action when the target responds to it, otherwise runs the task, if any. Either
  /// may destroy the record.
  void invokeWithEvent(const QKKeyEvent& event) const;

  /// Key code, modifiers and what is invoked, in four lines for a developer.
  [[nodiscard]] std::string description() const;
  /// Whether key code and flags are equal.
  [[nodiscard]] bool isEqual(const QKHotKey& other) const;
  /// The same for equal records.
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

}  // namespace seldial
