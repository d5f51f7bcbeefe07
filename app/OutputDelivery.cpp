// Every message to the UC client leaves here: standard output first, then a connection of its own.
#include <chrono>

#include "app/AppDelegate.h"
#include "app/GDUnixSocketEventsCS.h"
#include "app/StandardOutput.h"
#include "unixsocket/GDUnixSocketClient.h"

namespace seldial {
namespace {

/// How long one message may take, from the connect to its last byte: it blocks the main thread.
constexpr std::chrono::seconds kSendTimeout{5};

}  // namespace

void AppDelegate::emitMessage(const std::string& message) {
  printLine(message);
  sendToClientPipe(message);
}

void AppDelegate::sendToClientPipe(const std::string& message) {
  if (!ValueClientPipeName) return;
  const std::string& path = *ValueClientPipeName;
  const auto client = GDUnixSocketClient::initWithSocketPath(path);
  if (!client) return log("Failed to connect unix socket client at path " + path);
  client->setDelegate(unixSocketEvents());
  client->setSendTimeout(kSendTimeout);
  if (!client->connectWithAutoRead(false)) return log("Unix socket client connect failed");
  log("Unix socket client connect ok at path " + path);
  const auto written = client->writeData(message);
  log("Unix socket client bytes written (" + std::to_string(written) + ").");
  log("Now closing unix socket client.");
  client->close();
}

}  // namespace seldial
