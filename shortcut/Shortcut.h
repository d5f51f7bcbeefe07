// A recorded shortcut: its name in words, its hot key, trying it out, and sending it to Seldial.
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

/// The names of its keys: "Ctrl", "Alt", "D". Every key has one.
[[nodiscard]] QStringList keyLabels(const QKHotKey& hotKey, platform::KeyboardLayout& layout);

/// The shortcut in words, "Ctrl + Alt + D", for people who do not know or cannot see the glyphs.
[[nodiscard]] QString shortcutText(const QKHotKey& hotKey, platform::KeyboardLayout& layout);

/// The hot key of a record.
[[nodiscard]] HotKey hotKeyOf(const QKHotKey& hotKey);

/// Whether the shortcut consists of modifier keys only.
[[nodiscard]] bool hasOnlyModifiers(const QKHotKey& hotKey);

/// Whether a shortcut can be used on this desktop.
enum class ShortcutState {
  kUnknown,        ///< there is no shortcut, or it has not been tried yet
  kFree,           ///< it was free, and is now registered by this program
  kHeld,           ///< another program holds it
  kHeldBySeldial,  ///< Seldial holds it
  kUnusable,       ///< no program can register it
};

/// Registers a shortcut, one at a time, so that it can be tried out. It registers the given record
/// and not a copy, because a copy would unregister it when it is destroyed. Main thread only.
class ShortcutTrial {
 public:
  ShortcutTrial() = default;
  ~ShortcutTrial() { stop(); }
  ShortcutTrial(const ShortcutTrial&) = delete;
  ShortcutTrial& operator=(const ShortcutTrial&) = delete;

  /// False if no program can register it on this desktop.
  [[nodiscard]] static bool isUsable(const QKHotKey& hotKey);

  /// Registers the record, unless it is registered already, and unregisters the previous one.
  ShortcutState start(const std::shared_ptr<QKHotKey>& hotKey);

  /// Unregisters it, so that other programs can register it.
  void stop();

 private:
  std::shared_ptr<QKHotKey> hotKey_;
};

/// Sends a command to the seldial that listens at `path`, and waits for the answer at `answerPath`,
/// to which that seldial delivers its messages. If another program listens there, that program
/// receives the answer, and this function does not wait. Blocks for at most ten seconds; any
/// thread. Returns the error or the reason for a refusal, if any, without a full stop.
[[nodiscard]] std::optional<std::string> sendAndAwaitAnswer(const std::string& command,
                                                            const std::string& path,
                                                            const std::string& answerPath);

}  // namespace seldial
