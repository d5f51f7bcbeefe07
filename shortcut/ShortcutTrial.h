#pragma once

#include <memory>

#include "hotkey/QKHotKey.h"

namespace seldial {

/// Whether a shortcut can be used on this desktop.
enum class ShortcutState {
  kUnknown,   ///< there is no shortcut, or it was not tried yet
  kFree,      ///< it was free, and is now registered by this program
  kHeld,      ///< another program holds it
  kUnusable,  ///< no program can register it
};

/// Registers a shortcut while it is tried out, one at a time. The record itself is registered: a
/// copy would unregister it when it is destroyed. Main thread.
class ShortcutTrial {
 public:
  ShortcutTrial() = default;
  ~ShortcutTrial() { giveBack(); }
  ShortcutTrial(const ShortcutTrial&) = delete;
  ShortcutTrial& operator=(const ShortcutTrial&) = delete;

  /// False when no program can register it on this desktop.
  [[nodiscard]] static bool isUsable(const QKHotKey& hotKey);

  /// Registers the record, unless that is done already, and unregisters the previous one.
  ShortcutState take(const std::shared_ptr<QKHotKey>& hotKey);

  /// Unregisters it: other programs can have it now.
  void giveBack();

 private:
  std::shared_ptr<QKHotKey> taken_;
};

}  // namespace seldial
