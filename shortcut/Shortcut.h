// A recorded shortcut: in words, as the hot key that the command sets, tried out, and sent to
// Seldial.
#pragma once

#include <QString>
#include <QStringList>
#include <memory>
#include <optional>
#include <string>

#include "client/Protocol.h"
#include "hotkey/QKHotKey.h"
#include "platform/Keyboard.h"

namespace seldial {

/// "Ctrl", "Alt", "D": the names of its keys. Every key has one.
[[nodiscard]] QStringList keysInWords(const QKHotKey& hotKey, platform::KeyboardLayout& layout);

/// "Ctrl + Alt + D": the shortcut for people who do not know or do not see the glyphs.
[[nodiscard]] QString shortcutInWords(const QKHotKey& hotKey, platform::KeyboardLayout& layout);

/// The hot key of a record.
[[nodiscard]] HotKey hotKeyOf(const QKHotKey& hotKey);

/// Whether its key is a modifier key, so that there is no key besides the modifiers.
[[nodiscard]] bool hasOnlyModifiers(const QKHotKey& hotKey);

/// Whether a shortcut can be used on this desktop.
enum class ShortcutState {
  kUnknown,   ///< there is no shortcut, or it was not tried yet
  kFree,      ///< it was free, and is now registered by this program
  kHeld,      ///< another program holds it
  kOurs,      ///< Seldial holds it
  kUnusable,  ///< no program can register it
};

/// Registers a shortcut, one at a time, so that it can be tried out. It registers the record
/// itself, since a copy would unregister it when it is destroyed. Main thread only.
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

/// Sends a command to the seldial that listens at `path`, and listens at `answerPath`, to which
/// that seldial delivers its messages, until it has answered. Where another program listens there,
/// it gets the answer, and nothing is waited for. Blocks for ten seconds at most; any thread.
/// Returns what went wrong, or why the command was refused, without a full stop.
[[nodiscard]] std::optional<std::string> sendAndAwaitAnswer(const std::string& command,
                                                            const std::string& path,
                                                            const std::string& answerPath);

}  // namespace seldial
