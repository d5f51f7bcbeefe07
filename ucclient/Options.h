#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ucclient/HotKeySpelling.h"

namespace seldial {

/// What the command line asks for.
struct Options {
  std::string spelling = "ctrl+alt+d";  ///< of the hot key, as it was given
  HotKey hotKey;
  std::uint16_t delay = 500;  ///< from the copy keystroke to reading the pasteboard, ms
  std::string seldial;        ///< the program to start; empty: the one that belongs to this one
  bool conversation = false;  ///< show everything that passes over the sockets
  bool help = false;
};

/// Reads the arguments, without the program's own path. Nothing when they make no sense; `error`
/// is then one sentence that says why, without a full stop.
[[nodiscard]] std::optional<Options> optionsFrom(const std::vector<std::string>& arguments,
                                                 std::string& error);

/// Milliseconds as --delay takes them: up to five digits and nothing else, at most 65535.
[[nodiscard]] std::optional<std::uint16_t> delayFrom(const std::string& text);

/// The text of --help, with its last line feed.
[[nodiscard]] const char* helpText();

}  // namespace seldial
