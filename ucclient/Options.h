#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "client/Protocol.h"
#include "ucclient/Dialling.h"

namespace seldial {

/// The command line.
struct Options {
  std::string spelling = "ctrl+alt+d";  ///< of the hot key, as it was given
  HotKey hotKey;
  std::uint16_t delay = 500;  ///< from the copy keystroke to reading the pasteboard, ms
  std::string seldial;        ///< the program to start; empty: as findSeldial() says
  DialSettings dialling;      ///< its region is the locale's if none was given
  bool conversation = false;  ///< show everything that passes over the sockets
  bool help = false;
  bool version = false;
};

/// Reads the arguments, without the program's own path. Nothing when they are wrong; `error` is
/// then one sentence that says why, without a full stop.
[[nodiscard]] std::optional<Options> optionsFrom(const std::vector<std::string>& arguments,
                                                 std::string& error);

/// The text of --help, with its last line feed.
[[nodiscard]] const char* helpText();

}  // namespace seldial
