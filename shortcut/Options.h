#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "client/Protocol.h"

namespace seldial {

/// The command line of the shortcut window.
struct ShortcutOptions {
  std::optional<HotKey> hotKey;  ///< shown at the start
  /// Shown at the start: from the copy keystroke to reading, ms. None given: 500, or the
  /// configuration's.
  std::optional<std::uint16_t> delay;
  std::string socket;         ///< where the command is sent; empty: it is printed
  std::string client;         ///< where its answer is waited for; empty: it is not
  bool settings = false;      ///< write the configuration of seldial-uc
  std::string configuration;  ///< its file; empty: the usual one
  std::string testCopy;       ///< a text for a CopyTestWindow; empty: another window is meant
  bool help = false;
};

/// Reads the arguments, without the program's own path. Nothing when they are wrong; `error` is
/// then one sentence that says why, without a full stop.
[[nodiscard]] std::optional<ShortcutOptions> shortcutOptionsFrom(
    const std::vector<std::string>& arguments, std::string& error);

/// The text of --help, with its last line feed.
[[nodiscard]] const char* shortcutHelpText();

}  // namespace seldial
