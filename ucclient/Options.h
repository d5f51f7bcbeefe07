#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "client/Protocol.h"
#include "platform/VirtualKeys.h"
#include "ucclient/Dialling.h"

namespace seldial {

/// The command line, over the settings of the configuration file.
struct Options {
  std::string spelling = "ctrl+alt+d";  ///< of the hot key, as it was given
  HotKey hotKey{platform::kVK_ANSI_D,
                platform::kModifierFlagControl | platform::kModifierFlagOption};
  std::uint16_t delay = 500;  ///< from the copy keystroke to reading the pasteboard, ms
  std::string seldial;        ///< the program to start; empty: as findSeldial() says
  DialSettings dialling;      ///< its region is the locale's if none was given
  bool conversation = false;  ///< show everything that passes over the sockets
  std::string configuration;  ///< the file that was read; empty: the usual one
  bool help = false;
  bool version = false;
};

/// Reads the arguments, without the program's own path, and before them the configuration file that
/// they name, or else `usualConfiguration`, where an empty path is no file. Nothing when anything
/// is wrong; `error` is then one sentence that says why, without a full stop.
[[nodiscard]] std::optional<Options> optionsFrom(const std::vector<std::string>& arguments,
                                                 const std::string& usualConfiguration,
                                                 std::string& error);

/// The text of --help, with its last line feed.
[[nodiscard]] const char* helpText();

}  // namespace seldial
