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
  /// The initial delay from the copy keystroke to reading the clipboard, in ms. If not given: from
  /// the configuration file, or 500.
  std::optional<std::uint16_t> delay;
  std::string socket;         ///< to which the command is sent; empty: it is printed
  std::string client;         ///< at which to wait for the answer; empty: do not wait
  bool settings = false;      ///< write the configuration of seldial-uc
  std::string configuration;  ///< the file; empty: the default one
  std::string testCopy;       ///< the text for a CopyTestWindow; empty: no such window
  bool help = false;
  bool version = false;
};

/// Reads the arguments, which do not include the path of the program. Nothing if they are invalid;
/// `error` is then one sentence that says why, without a full stop.
[[nodiscard]] std::optional<ShortcutOptions> readShortcutOptions(
    const std::vector<std::string>& arguments, std::string& error);

/// The text of --help, with its last line feed.
[[nodiscard]] const char* shortcutHelpText();

}  // namespace seldial
