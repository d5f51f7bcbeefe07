// The connections of a server: accepting, reading and sending, and the table of connections.
#include <cerrno>
#include <utility>
#include <vector>

#include "unixsocket/GDUnixSocketServer.h"
#include "unixsocket/SocketPath.h"

namespace seldial {

GDUnixSocketServer::ConnectedClients GDUnixSocketServer::connectedClients() const {
  const MutexLock lock(lock_);
  ConnectedClients clients;
  for (const auto& [clientID, client] : clients_) clients.emplace(clientID, client.socket);
  return clients;
}

void GDUnixSocketServer::addClient(const std::shared_ptr<GDUnixSocket>& client) {
  if (!client) throw InternalInconsistencyException("Cannot add empty client");
  const MutexLock lock(lock_);
  clients_[client->uniqueID()] = {client, false};
}

/// False if the server has begun to listen again since it accepted the connection.
bool GDUnixSocketServer::addAccepted(const std::shared_ptr<GDUnixSocket>& connection,
                                     Descriptor::Generation listening) {
  const MutexLock lock(lock_);
  if (descriptor().generation() != listening) return false;
  clients_[connection->uniqueID()] = {connection, true};
  return true;
}

bool GDUnixSocketServer::clientExists(const std::shared_ptr<GDUnixSocket>& client) const {
  const MutexLock lock(lock_);
  return client && clients_.count(client->uniqueID()) != 0;
}

std::optional<Error> GDUnixSocketServer::removeAndCloseClient(
    const std::shared_ptr<GDUnixSocket>& client) {
  std::optional<Error> error;
  const MutexLock lock(lock_);
  if (client && clients_.erase(client->uniqueID()) != 0) client->closeWithError(&error);
  clientRemoved_.notifyAll();
  return error;
}

void GDUnixSocketServer::removeAllClients() {
  const MutexLock lock(lock_);
  // First end the reads of all, so that close() does not wait for one reader after the other.
  for (const auto& [clientID, client] : clients_) endCalls(*client.socket);
  for (const auto& [clientID, client] : clients_) client.socket->close();
  clients_.clear();
  clientRemoved_.notifyAll();
}

std::int64_t GDUnixSocketServer::sendData(const Data& data, const std::string& toClientWithID,
                                          std::optional<Error>* error) {
  storeError(error, {});
  const MutexLock lock(lock_);
  const auto client = clients_.find(toClientWithID);
  if (client != clients_.end()) return client->second.socket->writeData(data, error);
  if (error != nullptr) {
    *error =
        Error::gduds_errorForCode(GDUnixSocketErrorUnknownClient, "Client ID: " + toClientWithID);
  }
  return -1;
}

void GDUnixSocketServer::sendData(const Data& data, const std::string& toClientWithID,
                                  WriteCompletion completion) {
  queue()->async([server = self(), data, toClientWithID, completion = std::move(completion)] {
    std::optional<Error> error;
    const std::int64_t count = server->sendData(data, toClientWithID, &error);
    if (completion) completion(error, count);
  });
}

std::int64_t GDUnixSocketServer::writeData(const Data& /*data*/, std::optional<Error>* error) {
  storeError(error, {});
  return 0;
}

void GDUnixSocketServer::mainLoop() {
  acceptConnections(descriptor().generation());
}

/// Serves one listening socket. A server that is closed and listens again has a new loop, so the
/// old loop must end.
void GDUnixSocketServer::acceptConnections(Descriptor::Generation listening) {
  while (descriptor().holds(listening)) {
    const int accepted = acceptOn(listening);
    if (accepted == -1) {
      acceptFailed(listening, errno);
      return;
    }
    finishDisconnected();
    startReader(accepted, listening);
  }
}

int GDUnixSocketServer::acceptOn(Descriptor::Generation listening) {
  const Descriptor::Use use(descriptor(), listening);
  return use.accept();
}

/// Waits for the readers of all connections whose peers are gone. The readers do not depend on any
/// peer: all data has arrived, including the end of the stream.
void GDUnixSocketServer::finishDisconnected() {
  const MutexLock lock(lock_);
  std::vector<std::string> disconnected;
  for (const auto& [clientID, client] : clients_) {
    if (client.hasReader && peerHasClosed(*client.socket)) disconnected.push_back(clientID);
  }
  for (const auto& clientID : disconnected) {
    while (clients_.count(clientID) != 0) clientRemoved_.wait(lock_);
  }
}

/// The reader is posted first, but held until the connection is in the table and the accept
/// callback has returned: otherwise it could treat the connection as removed, or report data before
/// the accept.
void GDUnixSocketServer::startReader(int accepted, Descriptor::Generation listening) {
  const auto connection =
      GDUnixSocket::initWithSocketPath(kDummySocketPath, kDefaultFragmentSize, queue());
  connection->setFd(accepted);
  const auto startReading =
      queue()->asyncHeld([server = self(), connection] { server->readOnConnection(connection); });
  if (addAccepted(connection, listening)) {
    if (const auto receiver = delegate()) {
      receiver->unixSocketServerDidAcceptClientWithID(*this, connection->uniqueID());
    }
    // A close that finished before the connection was in the table has missed it.
    if (!descriptor().holds(listening)) removeAndCloseClient(connection);
  }
  startReading();
}

void GDUnixSocketServer::acceptFailed(Descriptor::Generation listening, int errorNumber) {
  {
    // A close on another thread has either not begun or is done.
    const MutexLock lock(closeLock_);
    if (!descriptor().holds(listening)) return;
    if (const auto receiver = delegate()) {
      errno = errorNumber;
      const Error error = errorOfFailedCall(GDUnixSocketErrorAcceptFailed, fd());
      receiver->unixSocketServerDidFailToAcceptConnection(*this, error);
    }
  }
  closeGeneration(listening);
}

void GDUnixSocketServer::readOnConnection(const std::shared_ptr<GDUnixSocket>& connection) {
  while (clientExists(connection)) {
    std::optional<Error> error;
    if (const auto data = connection->readWithError(&error)) {
      if (const auto receiver = delegate()) {
        receiver->unixSocketServerDidReceiveData(*this, *data, connection->uniqueID());
      }
      continue;
    }
    connectionEnded(connection, error);
    if (error) return;
  }
}

/// Reports nothing for a connection that is no longer in the table: this process closed it.
void GDUnixSocketServer::connectionEnded(const std::shared_ptr<GDUnixSocket>& connection,
                                         const std::optional<Error>& error) {
  if (!clientExists(connection)) return;
  if (const auto receiver = delegate()) {
    const std::string& clientID = connection->uniqueID();
    if (error) {
      receiver->unixSocketServerDidFailToReadForClientID(*this, clientID, *error);
    } else {
      receiver->unixSocketServerClientWithIDDidDisconnect(*this, clientID);
    }
  }
  removeAndCloseClient(connection);
}

}  // namespace seldial
