// The reference texts for integrators. They are part of the interface: odd spellings and spacing
// and the term "named pipe" are kept on purpose.
#include "app/AppDelegate.h"
#include "platform/Output.h"

namespace seldial {
namespace {

constexpr const char* kBanner[] = {
    R"(                       ____       _     _ _       _)",
    R"(                      / ___|  ___| | __| (_) __ _| |)",
    R"(                      \___ \ / _ \ |/ _` | |/ _` | |)",
    R"(                       ___) |  __/ | (_| | | (_| | |)",
    R"(                      |____/ \___|_|\__,_|_|\__,_|_|)",
    "                                macOS Mojave version",
    "                                © The Seldial developers 2017-2026",
    "",
};

constexpr const char* kUsage[] = {
    "usage:",
    "  -log: enable std output logs",
    "  -jsonlog: enable std output logs in json format",
    "  -changelog: shows change log (exits program)",
    "  -showapi: shows stdio json api (exits program)",
    "  dialerpipename=<path>: path of the incoming named pipe; i.e. to this app",
    "  clientpipename=<path>: path of the outgoing named pipe; i.e. from this app",
    "",
};

constexpr const char* kChangeLog[] = {
    "2018.11.01",
    "  Build target set to OS X 10.11 El Capitan.",
    "  Hardened Runtime enabled.",
    "2018.10.29",
    "  Project split form Morvent.app.",
    "  Hotkey dialing.",
    "2018.09.06",
    "  Pipe name mix-up fixed.",
    "  TX over unix socket disconnects after message is sent.",
    "  RX over unix socket buffers input until client disconnects.",
    "    (just one client at a time is supported.)",
    "2018.07.19",
    "  Named pipe io replaced with unix sockets.",
    "2018.02.23",
    "  Callto uri handler et al. added.",
    "2018.02.19",
    "  Project renamed to Morvent.app, with the latest release of its compiler toolchain.",
    "2018.01.26",
    "  Named pipe io added.",
    "2017.03.13",
    "  Application icon removed from dock.",
    "2017.03.10",
    "  Parameter added to api call sethotkey to configure the read",
    "  from pasteboard delay, default is 0.5 seconds.",
    "2017.03.10",
    "  Process hotkey copies the selection to the pasteboard before",
    "  reading from it.",
    "2017.03.10",
    "  Api call sethotkey will first unregister the previous hotkey",
    "  before registering the new one.",
    "2017.03.10",
    "  Change log added",
    "",
};

constexpr const char* kLogReference = R"(Log []->
:description
  log events
:parameters
   name       type      description
  event      string    the constant "Log"
  message    string    descriptive textual message
  datetime   string    current timestamp
:example
  {
    "event":"Log",
    "message":"process set hotkey",
    "datetime":"2017-02-06T14:10:32+0100"
  }
)";

constexpr const char* kMakeCallReference = R"(MakeCall []->
:description
  invoked when a calls needs to be initiated by the UC client
:parameters
   name       type      description
  command    string    the constant "MakeCall"
  number     string    the destination to be dialed
:example
  {
    "command":"MakeCall",
    "number":"+31201234567"
  }
)";

constexpr const char* kSetHotKeyReference = R"(SetHotKey ->[]
:description
  invoke to register a hotkey for dialing
:parameters
   name               type      description
  command            string    the constant "SetHotKey"
  modifierAlt        bool      use modifier "⌥" (option)
  modifierCommand    bool      use modifier "⌘" (command)
  modifierCtrl       bool      use modifier "⌃" (control)
  modifierShift      bool      use modifier "⇧" (shift)
  virtualkey         uint16    virtual key code (unsigned 16 bits int)
  readdelay          uint16    delay before reading pasteboard (default 500 ms)
:example
  {
    "command":"SetHotKey",
    "modifierAlt":false,
    "modifierCommand":true,
    "modifierCtrl":false,
    "modifierShift":false,
    "virtualkey":19,
    "readdelay":100
  }
)";

constexpr const char* kErrorReference = R"(Error []->
:description
  All input will respond with an Error or a HotkeyState
:parameters
   name       type      description
  response   string    the constant "Error"
  message    string    descriptive textual message
  datetime   string    current timestamp
:example
  {
    "response":"Error",
    "message":"invalid virtual key value",
    "datetime":"2017-02-06T14:10:32+0100"
  }
)";

constexpr const char* kHotkeyStateReference = R"(HotkeyState []->
:description
  response to "SetHotkey" command
:parameters
   name          type      description
  response      string    the constant "HotkeyState"
  result        bool      indicates whether the hotkey has been successfully set
  failreason    string    empty on success (optional)
:example
  {
    "response" : "HotkeyState",
    "result" : false,
    "failreason" : "invalid virtual key value"
  }
)";

template <std::size_t count>
void printLines(const char* const (&lines)[count]) {
  for (const char* const line : lines) platform::printLine(line);
}

}  // namespace

void AppDelegate::showBanner() {
  printLines(kBanner);
}

void AppDelegate::showHelp() {
  printLines(kUsage);
}

void AppDelegate::showChangeLog() {
  printLines(kChangeLog);
}

void AppDelegate::showApi() {
  platform::printLine(kLogReference);
  platform::printLine(kMakeCallReference);
  platform::printLine(kSetHotKeyReference);
  platform::printLine(kErrorReference);
  platform::printLine(kHotkeyStateReference);
}

}  // namespace seldial
