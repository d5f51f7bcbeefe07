// Launch, command line and termination.
#include <algorithm>
#include <initializer_list>
#include <string_view>
#include <utility>

#include "app/AppDelegate.h"
#include "hotkey/QKHotKeyCenter.h"
#include "platform/Output.h"
#include "unixsocket/GDUnixSocketClient.h"
#include "unixsocket/GDUnixSocketServer.h"

namespace seldial {
namespace {

bool isOneOf(const std::string& lowercasedArgument, std::initializer_list<const char*> forms) {
  return std::find(forms.begin(), forms.end(), lowercasedArgument) != forms.end();
}

void setFlag(bool& flag, const std::string& lowercasedArgument,
             std::initializer_list<const char*> forms) {
  if (isOneOf(lowercasedArgument, forms)) flag = true;
}

/// The value keeps the case of the argument.
void setValue(std::optional<std::string>& value, const std::string& argument,
              const std::string& lowercasedArgument, std::string_view key) {
  if (lowercasedArgument.starts_with(key)) value = argument.substr(key.size());
}

}  // namespace

std::shared_ptr<AppDelegate> AppDelegate::init(const platform::Ports& ports) {
  return std::shared_ptr<AppDelegate>(new AppDelegate(ports));
}

AppDelegate::AppDelegate(platform::Ports ports) : ports_(std::move(ports)) {}

void AppDelegate::applicationWillFinishLaunching() {}

void AppDelegate::applicationDidFinishLaunching() {
  parseCommandLine();
  showBanner();
  if (FlagHelp) showHelp();
  if (FlagChangeLog) showChangeLog();
  if (FlagShowApi) showApi();
  if (FlagHelp || FlagChangeLog || FlagShowApi) {
    ports_.application->terminate(this);
    return;  // terminate() may return; a run that only prints opens no socket
  }
  connectToDesktop();
  startUnixSocketServer();
}

void AppDelegate::applicationWillTerminate() {
  if (UnixSocketServer) {
    UnixSocketServer->close();
    if (UnixSocketServer->pathWasTakenOver()) {
      log("Unix socket path was taken over; its file is left alone: " + *ValueDialerPipeName + ".");
    }
    UnixSocketServer = nullptr;
  }
  platform::reportLostLines();
}

void AppDelegate::applicationMustEnd() {
  const std::lock_guard lock(endLock_);
  mustEnd_ = true;
  // Without the callback, which would only log, and only on the main thread.
  if (const auto server = incoming_.lock()) server->closeSilently();
  if (const auto client = outgoing_.lock()) client->close();
}

void AppDelegate::connectToDesktop() {
  desktop_ = ports_.connectDesktop();
  QKHotKeyCenter::setHotKeyEvents(desktop_.hotKeyEvents);
}

std::string AppDelegate::lowercased(std::string text) {
  for (char& letter : text) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return text;
}

void AppDelegate::parseCommandLine() {
  for (const auto& argument : ports_.application->arguments()) {
    const std::string lower = lowercased(argument);
    setFlag(FlagChangeLog, lower, {"/changelog", "-changelog"});
    setFlag(FlagHelp, lower, {"/help", "-help", "/h", "-h"});
    setFlag(FlagLog, lower, {"/log", "-log"});
    setFlag(FlagJsonLog, lower, {"/jsonlog", "-jsonlog"});
    setFlag(FlagShowApi, lower, {"/showapi", "-showapi"});
    setValue(ValueDialerPipeName, argument, lower, "dialerpipename=");
    setValue(ValueClientPipeName, argument, lower, "clientpipename=");
  }
}

}  // namespace seldial
