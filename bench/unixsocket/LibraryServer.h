#pragma once

#include <memory>
#include <stdexcept>
#include <string>

#include "bench/unixsocket/Bare.h"
#include "unixsocket/GDUnixSocketServer.h"

namespace seldial::bench {

/// Counts the callbacks of a server.
class CountingDelegate final : public GDUnixSocketServerDelegate {
 public:
  void unixSocketServerDidAcceptClientWithID(GDUnixSocketServer& /*server*/,
                                             const std::string& clientID) override {
    acceptedAt = Clock::now();
    lastClientID = clientID;
    accepted.add();
  }
  void unixSocketServerClientWithIDDidDisconnect(GDUnixSocketServer& /*server*/,
                                                 const std::string& /*clientID*/) override {
    ended.add();
  }

  ByteCounter accepted;
  ByteCounter ended;
  Clock::time_point acceptedAt;  ///< valid, like the next field, once `accepted` has counted it
  std::string lastClientID;
};

/// A server that listens until it is destroyed.
class LibraryServer {
 public:
  explicit LibraryServer(const std::string& path)
      : server(GDUnixSocketServer::initWithSocketPath(path)) {
    server->setDelegate(told);
    std::optional<Error> error;
    if (!server->listenWithMaxConnections(128, &error)) {
      throw std::runtime_error(error->localizedDescription);
    }
  }
  ~LibraryServer() { server->closeSilently(); }
  LibraryServer(const LibraryServer&) = delete;
  LibraryServer& operator=(const LibraryServer&) = delete;

  /// Waits for the connection that is accepted first.
  [[nodiscard]] std::string firstClientID() const {
    told->accepted.waitFor(1);
    return told->lastClientID;
  }

  const std::shared_ptr<CountingDelegate> told = std::make_shared<CountingDelegate>();
  const std::shared_ptr<GDUnixSocketServer> server;
};

}  // namespace seldial::bench
