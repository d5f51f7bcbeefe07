// The server's work on background threads: one task that accepts, one per connection that reads.
#include <cerrno>
#include <chrono>
#include <memory>
#include <utility>

#include "platform/BackgroundQueue.h"
#include "platform/Sockets.h"
#include "unixsocket/GDUnixSocketServer.h"
#include "unixsocket/Gate.h"
#include "unixsocket/SocketPath.h"

namespace seldial {
namespace {

constexpr std::chrono::milliseconds kAcceptDelay{1};

}  // namespace

void GDUnixSocketServer::startMainLoop(Descriptor::Serial listening) {
  platform::sharedBackgroundQueue().after(kAcceptDelay, [weak = weak_from_this(), listening] {
    const auto server = std::static_pointer_cast<GDUnixSocketServer>(weak.lock());
    if (server) server->acceptConnections(listening);
  });
  setStateOf(listening, GDUnixSocketStateListening);
}

void GDUnixSocketServer::mainLoop() {
  acceptConnections(descriptor().serial());
}

/// Serves one listening socket. A server that was closed and listens again has another loop for
/// that: this one must not stay beside it.
void GDUnixSocketServer::acceptConnections(Descriptor::Serial listening) {
  while (descriptor().holds(listening)) {
    const int accepted = acceptOn(listening);
    if (accepted == -1) {
      acceptFailed(listening, errno);
      return;
    }
    welcome(accepted);
  }
}

int GDUnixSocketServer::acceptOn(Descriptor::Serial listening) {
  const Descriptor::Use use(descriptor(), listening);
  return platform::fittedOut(use.accept());
}

/// The reader starts first and looks its connection up before anything else, so it waits at a gate
/// until the connection is in the table and the delegate knows it: none is taken for a removed one,
/// and its data does not overtake its accept.
void GDUnixSocketServer::welcome(int accepted) {
  const auto connection = GDUnixSocket::initWithSocketPath(kDummySocketPath);
  connection->setFd(accepted);
  const auto announced = std::make_shared<Gate>();
  platform::sharedBackgroundQueue().async([server = self(), connection, announced] {
    announced->wait();
    server->readOnConnection(connection);
  });
  addClient(connection);
  if (const auto told = delegate()) {
    told->unixSocketServerDidAcceptClientWithID(*this, connection->uniqueID());
  }
  // A close that was over before the connection was in the table did not find it there.
  if (isClosed()) removeAndCloseClient(connection);
  announced->open();
}

void GDUnixSocketServer::acceptFailed(Descriptor::Serial listening, int errorNumber) {
  {
    const MutexLock lock(closeLock_);  // a close of another thread is either not begun or done
    if (!descriptor().holds(listening)) return;
    if (const auto told = delegate()) {
      errno = errorNumber;
      const Error error = Error::gduds_errorForCode(GDUnixSocketErrorAcceptFailed, lastErrorInfo());
      told->unixSocketServerDidFailToAcceptConnection(*this, error);
    }
  }
  close();
}

void GDUnixSocketServer::readOnConnection(const std::shared_ptr<GDUnixSocket>& connection) {
  while (clientExists(connection)) {
    std::optional<Error> error;
    if (const auto data = connection->readWithError(&error)) {
      if (const auto told = delegate()) {
        told->unixSocketServerDidReceiveData(*this, *data, connection->uniqueID());
      }
      continue;
    }
    endOfConnection(connection, error);
    if (error) return;
  }
}

/// A connection that is no longer in the table was closed by this process, which knows.
void GDUnixSocketServer::endOfConnection(const std::shared_ptr<GDUnixSocket>& connection,
                                         const std::optional<Error>& error) {
  if (!clientExists(connection)) return;
  if (const auto told = delegate()) {
    const std::string& clientID = connection->uniqueID();
    if (error) {
      told->unixSocketServerDidFailToReadForClientID(*this, clientID, *error);
    } else {
      told->unixSocketServerClientWithIDDidDisconnect(*this, clientID);
    }
  }
  removeAndCloseClient(connection);
}

}  // namespace seldial
