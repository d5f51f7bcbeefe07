// The incoming channel. It serves one client at a time; its input is one command, which ends when
// it disconnects.
#include <cstdio>
#include <utility>

#include "app/AppDelegate.h"
#include "app/GDUnixSocketEventsCS.h"
#include "unixsocket/GDUnixSocketServer.h"

namespace seldial {

void AppDelegate::startUnixSocketServer() {
  if (!ValueDialerPipeName) return;
  const std::string& path = *ValueDialerPipeName;
  log("Start unix socket server at " + path);
  // Removes a file, link, socket or empty directory. If it cannot be removed, binding fails later.
  std::remove(path.c_str());
  UnixSocketServer = GDUnixSocketServer::initWithSocketPath(path);
  if (!UnixSocketServer) {
    log("Failed to start unix socket server at path " + path + ".");
    return;
  }
  UnixSocketServer->setDelegate(unixSocketEvents());
  {
    const std::lock_guard lock(endLock_);
    incoming_ = UnixSocketServer;
  }
  const bool listening = UnixSocketServer->listenWithError();
  log(std::string("Unix socket server listen ") + (listening ? "ok" : "failed") + " at path " +
      path + ".");
}

void AppDelegate::takeUnixSocketInput(const std::string& clientID) {
  log("Unix socket now taking input from client: " + clientID + ".");
  // Moved: it may be large.
  std::string purged = std::exchange(UnixSocketInputString, std::string());
  if (!purged.empty()) {
    purged.insert(0, "Unix socket input string from previous client " + UnixSocketConnetedClientId +
                         " did contain ");
    log(purged.append("; PURGED !!!"));
  }
  UnixSocketConnetedClientId = clientID;
}

void AppDelegate::appendUnixSocketInput(const std::string& clientID, std::string text) {
  if (clientID != UnixSocketConnetedClientId) {
    log("Unix socket received message from unrecognized client.");
    return;
  }
  if (UnixSocketInputString.empty()) {
    UnixSocketInputString = std::move(text);
  } else {
    UnixSocketInputString += text;
  }
}

void AppDelegate::processUnixSocketInputString(const std::string& clientID) {
  if (clientID != UnixSocketConnetedClientId) return;
  log("Process Unix socket input string.");
  // Moved, so that the memory of a large input is returned while it is processed.
  processInputString(std::exchange(UnixSocketInputString, std::string()));
  UnixSocketConnetedClientId = "";
}

std::shared_ptr<GDUnixSocketEventsCS> AppDelegate::unixSocketEvents() {
  if (!UnixSocketEventsCS) {
    UnixSocketEventsCS = std::make_shared<GDUnixSocketEventsCS>(weak_from_this(), ports_.mainQueue,
                                                                FlagLog || FlagJsonLog);
  }
  return UnixSocketEventsCS;
}

}  // namespace seldial
