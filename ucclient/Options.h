// The command line of seldial-uc: its options and its commands.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "client/Protocol.h"
#include "platform/VirtualKeys.h"
#include "ucclient/Dialling.h"

namespace seldial {

/// The options of the command line and the configuration file. The command line takes precedence.
struct Options {
  std::string spelling = "ctrl+alt+d";  ///< of the hot key, as given by the user
  HotKey hotKey{platform::kVK_ANSI_D,
                platform::kModifierFlagControl | platform::kModifierFlagOption};
  std::uint16_t delay = 500;  ///< from the copy keystroke to reading the clipboard, in ms
  std::string seldial;        ///< the program to start; empty: the result of findSeldial()
  DialSettings dialling;      ///< its region defaults to that of the locale
  bool conversation = false;  ///< show everything that passes over the sockets
  std::string configuration;  ///< the file that was read; empty: the default one
  bool help = false;
  bool version = false;
};

/// Reads the configuration file and then the arguments, which do not include the path of the
/// program. The file is the one that the arguments name, otherwise `defaultConfiguration`, which
/// may be empty for no file. Nothing if anything is invalid; `error` is then one sentence that says
/// why, without a full stop.
[[nodiscard]] std::optional<Options> readOptions(const std::vector<std::string>& arguments,
                                                 const std::string& defaultConfiguration,
                                                 std::string& error);

/// The text of --help, with its last line feed.
[[nodiscard]] const char* helpText();

/// Runs a command, such as "seldial-uc status", and returns the exit status: 0, 1 after an error, 2
/// if the arguments are invalid. `arguments` does not include the path of the program. Nothing if
/// they do not begin with the name of a command. Main thread, before any other thread is started.
[[nodiscard]] std::optional<int> runCommand(const std::vector<std::string>& arguments);

}  // namespace seldial
