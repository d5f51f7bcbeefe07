#pragma once

#include <memory>

#include "hotkey/QKHotKey.h"

namespace seldial {

/// What the desktop says of a shortcut.
enum class ShortcutState {
  kUnknown,   ///< there is none, or it was not asked for yet
  kFree,      ///< it is this program's now
  kHeld,      ///< another program holds it
  kUnusable,  ///< nobody can have it here
};

/// Takes a shortcut from the desktop to try it out, one at a time, and gives it back. It is the
/// record itself that is registered: a copy would drop it from the registry as it dies. Main
/// thread.
class ShortcutTrial {
 public:
  ShortcutTrial() = default;
  ~ShortcutTrial() { giveBack(); }
  ShortcutTrial(const ShortcutTrial&) = delete;
  ShortcutTrial& operator=(const ShortcutTrial&) = delete;

  /// False where nobody can have it, whether it is held or not.
  [[nodiscard]] static bool isUsable(const QKHotKey& hotKey);

  /// Takes the combination of the record, unless it is taken already, instead of the one before.
  ShortcutState take(const std::shared_ptr<QKHotKey>& hotKey);

  /// Whoever else wants it can have it from now on.
  void giveBack();

 private:
  std::shared_ptr<QKHotKey> taken_;
};

}  // namespace seldial
