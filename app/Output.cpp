// Output: log lines, and the messages to the UC client.
#include "platform/Output.h"

#include <chrono>
#include <ctime>

#include "api/MessageRecords.h"
#include "api/Timestamps.h"
#include "app/AppDelegate.h"
#include "app/GDUnixSocketEventsCS.h"
#include "platform/Ports.h"
#include "unixsocket/GDUnixSocketClient.h"

namespace seldial {
namespace {

constexpr const char* kSubThreadMarker = ">>>SUB THREAD<<< ";

/// How long one message may take, from the connect to its last byte: it blocks the main thread.
constexpr std::chrono::seconds kSendTimeout{5};

/// The same limit once the application must end.
constexpr std::chrono::milliseconds kLastSendTimeout{100};

/// The local time of day, as HH:mm:ss.
std::string timeOfDay() {
  const std::tm local = localTime(std::time(nullptr));
  char text[sizeof "HH:mm:ss"];
  std::strftime(text, sizeof text, "%H:%M:%S", &local);
  return text;
}

void printLine(const JSONString& line) {
  platform::printLine([&line](const auto& sink) { line.forEachPiece(sink); });
}

}  // namespace

void AppDelegate::log(const std::string& message) {
  if (FlagLog) {
    const bool main = ports_.mainQueue->isMainThread();
    const std::string before = (main ? "" : kSubThreadMarker) + ("Log " + timeOfDay() + "> ");
    platform::printLine([&](const auto& sink) { return sink(before) && sink(message); });
  }
  if (FlagJsonLog) printLine(LogApi{message}.toJSONString());
}

void AppDelegate::emitMessage(const JSONString& message) {
  printLine(message);
  sendToClientPipe(message);
}

void AppDelegate::sendToClientPipe(const JSONString& message) {
  if (!ValueClientPipeName) return;
  const std::string& path = *ValueClientPipeName;
  const auto client = GDUnixSocketClient::initWithSocketPath(path);
  if (!client) return log("Failed to connect unix socket client at path " + path);
  client->setDelegate(unixSocketEvents());
  prepareToSend(client);
  if (!client->connectWithAutoRead(false)) return log("Unix socket client connect failed");
  log("Unix socket client connect ok at path " + path);
  const auto written =
      client->writeData([&message](const auto& sink) { message.forEachPiece(sink); });
  log("Unix socket client bytes written (" + std::to_string(written) + ").");
  log("Now closing unix socket client.");
  client->close();
}

void AppDelegate::prepareToSend(const std::shared_ptr<GDUnixSocketClient>& client) {
  const std::lock_guard lock(endLock_);
  outgoing_ = client;
  client->setSendTimeout(mustEnd_ ? kLastSendTimeout : std::chrono::milliseconds(kSendTimeout));
}

}  // namespace seldial
