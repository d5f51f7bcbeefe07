// Passes socket events from background threads to the main queue.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "platform/Ports.h"
#include "unixsocket/GDUnixSocketClient.h"
#include "unixsocket/GDUnixSocketServer.h"

namespace seldial {

class AppDelegate;

/// The delegate of the server and of every outgoing client. Its callbacks run on background threads
/// and do not touch the application's state: they post a log line and then a step to the main
/// queue. It is a fatal error if the application is gone when a posted step runs.
class GDUnixSocketEventsCS final : public GDUnixSocketServerDelegate,
                                   public GDUnixSocketClientDelegate {
 public:
  /// `logs`: whether AppDelegate::log() writes anything.
  GDUnixSocketEventsCS(std::weak_ptr<AppDelegate> main,
                       std::shared_ptr<platform::MainQueue> mainQueue, bool logs);

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

  /// Posts a log line to the main queue, unless it would not be written; any thread.
  void logOnMainQueue(std::string message);

  const std::weak_ptr<AppDelegate> Main;

 private:
  class ReceivedChunks;

  /// Posts a step to the main queue. A step without output need not wake up the main thread: it
  /// runs before the next one that does.
  template <class Step>
  void postToMain(bool wakesUp, Step step);
  /// Like postToMain(); the caller holds the lock that keeps steps in the order of the callbacks.
  template <class Step>
  void postLocked(bool wakesUp, Step step);
  /// Posts a new step for the chunks of a client; the caller holds the lock.
  void postChunk(const std::string& clientID, std::string_view chunk);

  const std::shared_ptr<platform::MainQueue> mainQueue_;
  const bool logs_;
  std::mutex mutex_;  ///< held while a step is posted; no step locks it
  /// The last steps that were posted, by client, if they process chunks: the client's next chunk is
  /// added to its step, unless the main thread has begun. Guarded by `mutex_`.
  std::map<std::string, std::shared_ptr<ReceivedChunks>> lastReceived_;
};

}  // namespace seldial
