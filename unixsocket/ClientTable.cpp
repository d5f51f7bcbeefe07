// The server's table of connections: every step under the server's own lock.
#include "unixsocket/GDUnixSocketServer.h"

namespace seldial {

GDUnixSocketServer::ConnectedClients GDUnixSocketServer::connectedClients() const {
  const MutexLock lock(lock_);
  return connectedClients_;
}

void GDUnixSocketServer::addClient(const std::shared_ptr<GDUnixSocket>& client) {
  if (!client) throw InternalInconsistencyException("Cannot add empty client");
  const MutexLock lock(lock_);
  connectedClients_[client->uniqueID()] = client;
}

bool GDUnixSocketServer::clientExists(const std::shared_ptr<GDUnixSocket>& client) const {
  const MutexLock lock(lock_);
  return client && connectedClients_.count(client->uniqueID()) != 0;
}

std::optional<Error> GDUnixSocketServer::removeAndCloseClient(
    const std::shared_ptr<GDUnixSocket>& client) {
  std::optional<Error> error;
  const MutexLock lock(lock_);
  if (client && connectedClients_.erase(client->uniqueID()) != 0) client->closeWithError(&error);
  return error;
}

void GDUnixSocketServer::removeAllClients() {
  const MutexLock lock(lock_);
  for (const auto& [clientID, client] : connectedClients_) client->close();
  connectedClients_.clear();
}

bool GDUnixSocketServer::isClosed() const {
  const MutexLock lock(lock_);
  return fd() == -1;
}

}  // namespace seldial
