#pragma once

#include <memory>
#include <string>

#include "hotkey/QKKeyEvent.h"

namespace seldial {

/// The name of an action; two are the same when their names are equal. Empty is no action.
using QKAction = std::string;

/// What a hot key hands to its action besides the event; its type is between the two of them.
using QKObject = std::shared_ptr<void>;

/// Receives the actions of hot keys.
class QKHotKeyTarget {
 public:
  virtual ~QKHotKeyTarget() = default;

  /// Whether perform() knows that action; one that it does not know is never performed.
  [[nodiscard]] virtual bool respondsTo(const QKAction& action) const = 0;

  /// Does what the action says; main thread. `object` is the record's own, may be null.
  virtual void perform(const QKAction& action, const QKKeyEvent& event, const QKObject& object) = 0;

  /// The target's name in a hot key's description.
  [[nodiscard]] virtual std::string description() const;
};

}  // namespace seldial
