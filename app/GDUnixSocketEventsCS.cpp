#include "app/GDUnixSocketEventsCS.h"

#include <utility>

#include "api/FatalError.h"
#include "api/Utf8.h"
#include "app/AppDelegate.h"

namespace seldial {

GDUnixSocketEventsCS::GDUnixSocketEventsCS(std::weak_ptr<AppDelegate> main,
                                           std::shared_ptr<platform::MainQueue> mainQueue)
    : Main(std::move(main)), mainQueue_(std::move(mainQueue)) {}

void GDUnixSocketEventsCS::unixSocketServerDidStartListening(GDUnixSocketServer& /*server*/) {
  logOnMainQueue("Unix socket server; did start listening");
}

void GDUnixSocketEventsCS::unixSocketServerDidClose(GDUnixSocketServer& /*server*/,
                                                    const std::optional<Error>& /*error*/) {
  logOnMainQueue("Unix socket server; did close");
}

void GDUnixSocketEventsCS::unixSocketServerDidAcceptClientWithID(GDUnixSocketServer& /*server*/,
                                                                 const std::string& clientID) {
  logOnMainQueue("Unix socket server; did accept client with id: " + clientID);
  postToMain([clientID](AppDelegate& main) { main.takeUnixSocketInput(clientID); });
}

void GDUnixSocketEventsCS::unixSocketServerClientWithIDDidDisconnect(GDUnixSocketServer& /*server*/,
                                                                     const std::string& clientID) {
  logOnMainQueue("Unix socket server; client with id did disconnect: " + clientID);
  postToMain([clientID](AppDelegate& main) { main.processUnixSocketInputString(clientID); });
}

void GDUnixSocketEventsCS::unixSocketServerDidReceiveData(GDUnixSocketServer& /*server*/,
                                                          const Data& data,
                                                          const std::string& clientID) {
  // Each chunk is decoded by itself, on purpose: one that ends inside a character is discarded.
  if (!isValidUTF8(data)) {
    logOnMainQueue("Unix socket server; did receive nothing; from client with id: " + clientID +
                   ".");
    return;
  }
  logOnMainQueue("Unix socket server; did receive: " + data + "; from client with id: " + clientID);
  appendUnixSocketInput(clientID, data);
}

void GDUnixSocketEventsCS::unixSocketServerDidFailToReadForClientID(GDUnixSocketServer& /*server*/,
                                                                    const std::string& clientID,
                                                                    const Error& /*error*/) {
  logOnMainQueue("Unix socket server; did fail to read for client id: " + clientID);
}

void GDUnixSocketEventsCS::unixSocketServerDidFailToAcceptConnection(GDUnixSocketServer& /*server*/,
                                                                     const Error& /*error*/) {
  logOnMainQueue("Unix socket server; did fail to accept");
}

void GDUnixSocketEventsCS::unixSocketClientDidReceiveData(GDUnixSocketClient& /*client*/,
                                                          const Data& data) {
  logOnMainQueue(isValidUTF8(data) ? "Unix socket client; did receive: " + data
                                   : "Unix socket client; did receive nothing.");
}

void GDUnixSocketEventsCS::unixSocketClientDidFailToReadWithError(GDUnixSocketClient& /*client*/,
                                                                  const Error& /*error*/) {
  logOnMainQueue("Unix socket client; did fail to read");
}

void GDUnixSocketEventsCS::logOnMainQueue(std::string message) {
  postToMain([message = std::move(message)](AppDelegate& main) { main.log(message); });
}

void GDUnixSocketEventsCS::appendUnixSocketInput(const std::string& clientID, std::string text) {
  postToMain([clientID, text = std::move(text)](AppDelegate& main) {
    main.appendUnixSocketInput(clientID, text);
  });
}

void GDUnixSocketEventsCS::postToMain(std::function<void(AppDelegate&)> step) {
  mainQueue_->async([weakMain = Main, step = std::move(step)] {
    const auto main = weakMain.lock();
    if (!main) fatalError("socket event: the application is gone");
    step(*main);
  });
}

}  // namespace seldial
