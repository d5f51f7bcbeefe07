#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <iostream>
#include <iterator>
#include <memory>

#include "client/Configuration.h"
#include "client/Connection.h"
#include "client/Options.h"
#include "platform/System.h"
#include "ucclient/Check.h"
#include "ucclient/Console.h"
#include "ucclient/MainThread.h"
#include "ucclient/MessageListener.h"
#include "ucclient/Options.h"
#include "ucclient/Paths.h"

namespace seldial {
namespace {

using Arguments = std::vector<std::string>;

int fail(const std::string& sentence) {
  Console(false).error(sentence);
  return 1;
}

int showStatus(const Arguments& /*arguments*/) {
  std::string error;
  const auto status = askRunningClient(kStatusRequest, error);
  if (!status) return fail(error);
  std::fputs(status->c_str(), stdout);
  return 0;
}

int reload(const Arguments& /*arguments*/) {
  std::string error;
  const auto answer = askRunningClient(kReloadRequest, error);
  if (!answer) return fail(error);
  if (answer->starts_with(kReloadNote)) return std::puts(answer->c_str()) < 0 ? 1 : 0;
  return answer->empty() ? 0 : fail(*answer);
}

/// Replaces this process by the settings window.
int openSettings(const Arguments& arguments) {
  Arguments command{findProgram("seldial-shortcut", executableDirectory()), "--settings"};
  command.insert(command.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  pointers.reserve(command.size() + 1);
  for (std::string& argument : command) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  execvp(pointers.front(), pointers.data());
  return fail("cannot start " + command.front() + ": " + platform::errorText(errno));
}

std::optional<Options> optionsOf(const Arguments& arguments) {
  std::string error;
  auto options = readOptions(arguments, defaultConfigurationPath(), error);
  if (!options) fail(error);
  return options;
}

int check(const Arguments& arguments) {
  const auto options = optionsOf(arguments);
  if (!options) return 2;
  return checkEverything(*options) ? 0 : 1;
}

int enable(const Arguments& /*arguments*/) {
  const auto options = optionsOf({});
  if (!options) return 2;
  if (!options->dialling.dials()) {
    return fail("nothing would be dialled: set dial or open in " + defaultConfigurationPath());
  }
  std::string result;
  if (!enableLoginStart(platform::executablePath(), result)) return fail(result);
  std::puts(result.c_str());
  return 0;
}

int disable(const Arguments& /*arguments*/) {
  std::string result;
  if (!disableLoginStart(result)) return fail(result);
  std::puts(result.c_str());
  return 0;
}

/// Ignores the settings of this user's client, because the seldial belongs to another program.
int sendSetHotKey(const Arguments& arguments) {
  std::string error;
  const auto options = readOptions(Arguments(arguments.begin() + 1, arguments.end()), "", error);
  if (!options) {
    fail(error);
    return 2;
  }
  const std::string command = setHotKeyCommand(options->hotKey, options->delay);
  if (const auto failure = sendCommand(command, arguments.front())) return fail(*failure);
  std::puts(command.c_str());
  return 0;
}

int sendStandardInput(const Arguments& arguments) {
  const std::string text(std::istreambuf_iterator<char>(std::cin), {});
  const auto failure = sendCommand(text, arguments.front());
  return failure ? fail(*failure) : 0;
}

int printMessages(const Arguments& arguments) {
  if (isListening(arguments.front())) {
    return fail("another program listens at " + arguments.front());
  }
  std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
  const auto mainThread = std::make_shared<MainThread>();
  int status = 0;
  onTerminationSignals([mainThread] { mainThread->post([mainThread] { mainThread->stop(); }); });
  std::string error;
  const auto listener = MessageListener::listenAt(
      arguments.front(), mainThread,
      {[] {}, [](const std::string& message) { Console(false).received(message); },
       [&status, mainThread](const std::string& why) {
         status = fail(why);
         mainThread->stop();
       }},
      error);
  if (!listener) return fail(error);
  mainThread->run();
  return status;
}

/// The connection itself is the press; nothing is sent.
int press(const Arguments& /*arguments*/) {
  const auto failure = sendCommand("", platform::pressSocketPath());
  return failure ? fail("no seldial waits for a press: " + *failure) : 0;
}

struct Command {
  const char* name;
  bool takesSocket;  ///< the path of a socket, as the first argument
  bool takesOptions;
  int (*run)(const Arguments& arguments);
};

constexpr Command kCommands[] = {
    {"check", false, true, check},          {"enable", false, false, enable},
    {"disable", false, false, disable},     {"status", false, false, showStatus},
    {"reload", false, false, reload},       {"settings", false, true, openSettings},
    {"send", true, true, sendSetHotKey},    {"raw", true, false, sendStandardInput},
    {"listen", true, false, printMessages}, {"press", false, false, press},
};

bool hasUsableArguments(const Command& command, const Arguments& arguments) {
  const std::size_t needed = command.takesSocket ? 1 : 0;
  if (arguments.size() < needed) return false;
  return command.takesOptions || arguments.size() == needed;
}

}  // namespace

std::optional<int> runCommand(const std::vector<std::string>& arguments) {
  for (const Command& command : kCommands) {
    if (arguments.empty() || arguments.front() != command.name) continue;
    const Arguments rest(arguments.begin() + 1, arguments.end());
    if (hasUsableArguments(command, rest)) return command.run(rest);
    fail(std::string("usage: seldial-uc ") + command.name + (command.takesSocket ? " SOCKET" : "") +
         (command.takesOptions ? " [OPTION...]" : ""));
    return 2;
  }
  return std::nullopt;
}

}  // namespace seldial
