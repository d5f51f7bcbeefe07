// Carries what the sockets report from their threads to the main queue.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/MainQueue.h"
#include "unixsocket/GDUnixSocketClient.h"
#include "unixsocket/GDUnixSocketServer.h"

namespace seldial {

class AppDelegate;

/// The delegate of the server and of every outgoing client. Its callbacks run on the library's
/// threads and touch no state of the application: they convert what they got and post it, the log
/// line first, to the main queue. A posted step that finds the application gone is a fatal error.
class GDUnixSocketEventsCS final : public GDUnixSocketServerDelegate,
                                   public GDUnixSocketClientDelegate {
 public:
  GDUnixSocketEventsCS(std::weak_ptr<AppDelegate> main,
                       std::shared_ptr<platform::MainQueue> mainQueue);

  void unixSocketServerDidStartListening(GDUnixSocketServer& server) override;
  void unixSocketServerDidClose(GDUnixSocketServer& server,
                                const std::optional<Error>& error) override;
  void unixSocketServerDidAcceptClientWithID(GDUnixSocketServer& server,
                                             const std::string& clientID) override;
  void unixSocketServerClientWithIDDidDisconnect(GDUnixSocketServer& server,
                                                 const std::string& clientID) override;
  void unixSocketServerDidReceiveData(GDUnixSocketServer& server, const Data& data,
                                      const std::string& clientID) override;
  void unixSocketServerDidFailToReadForClientID(GDUnixSocketServer& server,
                                                const std::string& clientID,
                                                const Error& error) override;
  void unixSocketServerDidFailToAcceptConnection(GDUnixSocketServer& server,
                                                 const Error& error) override;
  void unixSocketClientDidReceiveData(GDUnixSocketClient& client, const Data& data) override;
  void unixSocketClientDidFailToReadWithError(GDUnixSocketClient& client,
                                              const Error& error) override;

  /// Posts a log line to the main queue; any thread.
  void logOnMainQueue(std::string message);

  const std::weak_ptr<AppDelegate> Main;

 private:
  /// Posts a step to the main queue, where it runs with the application.
  void postToMain(std::function<void(AppDelegate&)> step);
  void appendUnixSocketInput(const std::string& clientID, std::string text);

  const std::shared_ptr<platform::MainQueue> mainQueue_;
};

}  // namespace seldial
