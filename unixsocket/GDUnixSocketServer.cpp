#include "unixsocket/GDUnixSocketServer.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <utility>

#include "platform/Sockets.h"
#include "unixsocket/SocketPath.h"

namespace seldial {
namespace {

constexpr std::int32_t kDefaultBacklog = 5;

/// From a successful listen to the start of the accept loop.
constexpr std::chrono::milliseconds kAcceptDelay{1};

/// Threads wait at it until it is opened, once and for all.
class Gate {
 public:
  void open() SELDIAL_EXCLUDES(mutex_) {
    const MutexLock lock(mutex_);
    open_ = true;
    opened_.notifyAll();
  }

  void wait() SELDIAL_EXCLUDES(mutex_) {
    const MutexLock lock(mutex_);
    while (!open_) opened_.wait(mutex_);
  }

 private:
  Mutex mutex_;
  bool open_ SELDIAL_GUARDED_BY(mutex_) = false;
  Condition opened_;
};

}  // namespace

std::shared_ptr<GDUnixSocketServer> GDUnixSocketServer::initWithSocketPath(
    const std::string& socketPath, std::uint64_t andFragmentSize, const Queue& queue) {
  return make<GDUnixSocketServer>(socketPath, andFragmentSize, queue);
}

GDUnixSocketServer::~GDUnixSocketServer() {
  if (fd() != -1) GDUnixSocketServer::closeWithError(nullptr);
}

std::shared_ptr<GDUnixSocketServer> GDUnixSocketServer::self() {
  return std::static_pointer_cast<GDUnixSocketServer>(shared_from_this());
}

std::shared_ptr<GDUnixSocketServerDelegate> GDUnixSocketServer::delegate() const {
  const MutexLock lock(delegateLock_);
  return delegate_.lock();
}

void GDUnixSocketServer::setDelegate(std::weak_ptr<GDUnixSocketServerDelegate> delegate) {
  const MutexLock lock(delegateLock_);
  delegate_ = std::move(delegate);
}

bool GDUnixSocketServer::listenWithError(std::optional<Error>* error) {
  return listenWithMaxConnections(0, error);
}

bool GDUnixSocketServer::listenWithMaxConnections(std::int32_t maxConnections,
                                                  std::optional<Error>* error) {
  std::optional<Error> failure =
      openListening(maxConnections == 0 ? kDefaultBacklog : maxConnections);
  const bool listening = !failure;
  handError(error, std::move(failure));
  if (!listening) return false;
  startMainLoop(descriptor().generation());
  if (const auto receiver = delegate()) receiver->unixSocketServerDidStartListening(*this);
  return true;
}

std::optional<Error> GDUnixSocketServer::openListening(std::int32_t backlog) {
  if (auto failure = openSocket()) return failure;
  const std::string& path = socketPath();
  if (!SocketAddress(path).names(path)) {
    closeSilently();
    // Kept on purpose: the code of a failed listen, as in the client.
    return Error::gduds_errorForCode(GDUnixSocketErrorListenFailed,
                                     "The socket path is inconsistent");
  }
  unlinkSocket(path.c_str());  // a dead server's file; if this fails, bind reports it
  if (!bindTo(path)) {
    closeSilently();
    // Kept on purpose: built after the close, with descriptor -1 and the errno that the close left.
    return Error::gduds_errorForCode(GDUnixSocketErrorBindFailed, lastErrorInfo());
  }
  if (!listenOn(backlog)) {
    closeSilently();
    return Error::gduds_errorForCode(GDUnixSocketErrorListenFailed, lastErrorInfo());
  }
  return {};
}

bool GDUnixSocketServer::bindTo(const std::string& path) {
  const SocketAddress address(path);
  const Descriptor::Use use(descriptor());
  return ::bind(use.number(), address.get(), SocketAddress::size()) == 0;
}

bool GDUnixSocketServer::listenOn(std::int32_t backlog) {
  const Descriptor::Use use(descriptor());
  return ::listen(use.number(), backlog) == 0;
}

std::int64_t GDUnixSocketServer::sendData(const Data& data, const std::string& toClientWithID,
                                          std::optional<Error>* error) {
  handError(error, {});
  const MutexLock lock(lock_);
  const auto client = connectedClients_.find(toClientWithID);
  if (client != connectedClients_.end()) return client->second->writeData(data, error);
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
  handError(error, {});
  return 0;
}

bool GDUnixSocketServer::closeWithError(std::optional<Error>* error) {
  return closeWithError(error, true);
}

bool GDUnixSocketServer::closeSilently() {
  return closeWithError(nullptr, false);
}

bool GDUnixSocketServer::closeWithError(std::optional<Error>* error, bool informDelegate) {
  // The callback may drop the last reference while closeLock is held.
  const auto alive = weak_from_this().lock();
  removeAllClients();
  std::optional<Error> failure = closeListening(informDelegate);
  const bool closed = !failure;
  handError(error, std::move(failure));
  return closed;
}

std::optional<Error> GDUnixSocketServer::closeListening(bool informDelegate) {
  const MutexLock lock(closeLock_);
  std::optional<Error> failure = unlinkSocket();
  // Kept on purpose: a server whose file cannot be removed keeps listening.
  if (!failure) {
    GDUnixSocket::closeWithError(&failure);
    removeAllClients();  // those accepted since the first removal
  }
  if (informDelegate) {
    if (const auto receiver = delegate()) receiver->unixSocketServerDidClose(*this, failure);
  }
  return failure;
}

std::optional<Error> GDUnixSocketServer::unlinkSocket() {
  // A path with a NUL byte names no file; the part before it may be another server's.
  if (socketPath().find('\0') != std::string::npos) return {};
  return unlinkSocket(socketPath().c_str());
}

std::optional<Error> GDUnixSocketServer::unlinkSocket(const char* path) {
  struct stat status {};
  if (::stat(path, &status) != 0 || !S_ISSOCK(status.st_mode)) return {};
  if (::unlink(path) == 0) return {};
  return Error::gduds_errorForCode(GDUnixSocketErrorUnlinkFailed, lastErrorInfo());
}

// The table of connections. Every step holds the server's own lock.

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

// The background work: one task accepts, and one task per connection reads.

void GDUnixSocketServer::startMainLoop(Descriptor::Generation listening) {
  queue()->after(kAcceptDelay, [weak = weak_from_this(), listening] {
    const auto server = std::static_pointer_cast<GDUnixSocketServer>(weak.lock());
    if (server) server->acceptConnections(listening);
  });
  setStateOf(listening, GDUnixSocketStateListening);
}

void GDUnixSocketServer::mainLoop() {
  acceptConnections(descriptor().generation());
}

/// Serves one listening socket. A server that is closed and listens again has a new loop, so this
/// one must end.
void GDUnixSocketServer::acceptConnections(Descriptor::Generation listening) {
  while (descriptor().holds(listening)) {
    const int accepted = acceptOn(listening);
    if (accepted == -1) {
      acceptFailed(listening, errno);
      return;
    }
    startReader(accepted);
  }
}

int GDUnixSocketServer::acceptOn(Descriptor::Generation listening) {
  const Descriptor::Use use(descriptor(), listening);
  return platform::setSocketFlags(use.accept());
}

/// The reader is started first, and first looks its connection up. It waits at a gate until the
/// connection is in the table and the accept callback has returned: otherwise it could take the
/// connection for a removed one, or report data before the accept.
void GDUnixSocketServer::startReader(int accepted) {
  const auto connection =
      GDUnixSocket::initWithSocketPath(kDummySocketPath, kDefaultFragmentSize, queue());
  connection->setFd(accepted);
  const auto mayRead = std::make_shared<Gate>();
  queue()->async([server = self(), connection, mayRead] {
    mayRead->wait();
    server->readOnConnection(connection);
  });
  addClient(connection);
  if (const auto receiver = delegate()) {
    receiver->unixSocketServerDidAcceptClientWithID(*this, connection->uniqueID());
  }
  // A close that finished before the connection was in the table has missed it.
  if (isClosed()) removeAndCloseClient(connection);
  mayRead->open();
}

void GDUnixSocketServer::acceptFailed(Descriptor::Generation listening, int errorNumber) {
  {
    // A close on another thread has either not begun or is done.
    const MutexLock lock(closeLock_);
    if (!descriptor().holds(listening)) return;
    if (const auto receiver = delegate()) {
      errno = errorNumber;
      const Error error = Error::gduds_errorForCode(GDUnixSocketErrorAcceptFailed, lastErrorInfo());
      receiver->unixSocketServerDidFailToAcceptConnection(*this, error);
    }
  }
  close();
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
