#include "unixsocket/GDUnixSocketServer.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

#include "platform/BackgroundQueue.h"
#include "unixsocket/SocketPath.h"

namespace seldial {
namespace {

constexpr std::int32_t kDefaultBacklog = 5;

}  // namespace

std::shared_ptr<GDUnixSocketServer> GDUnixSocketServer::initWithSocketPath(
    const std::string& socketPath, std::uint64_t andFragmentSize) {
  return make<GDUnixSocketServer>(socketPath, andFragmentSize);
}

GDUnixSocketServer::GDUnixSocketServer(Key key, const std::string& socketPath,
                                       std::uint64_t fragmentSize)
    : GDUnixSocket(key, socketPath, fragmentSize) {}

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
  startMainLoop(descriptor().serial());
  if (const auto told = delegate()) told->unixSocketServerDidStartListening(*this);
  return true;
}

std::optional<Error> GDUnixSocketServer::openListening(std::int32_t backlog) {
  if (auto failure = openSocket()) return failure;
  const std::string& path = socketPath();
  if (!SocketAddress(path).names(path)) {
    closeSilently();
    // Kept on purpose: the code of a failed listen, as the client reports it too.
    return Error::gduds_errorForCode(GDUnixSocketErrorListenFailed,
                                     "The socket path is inconsistent");
  }
  unlinkSocket(path.c_str());  // what a dead server left; if it stays, bind fails and tells
  if (!bindTo(path)) {
    closeSilently();
    // Kept on purpose: told after the close, so of descriptor -1 and the errno that is left then.
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
  platform::sharedBackgroundQueue().async(
      [server = self(), data, toClientWithID, completion = std::move(completion)] {
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
  // The callback may drop the last reference, and closeLock must outlive its being held.
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
  // Kept on purpose: a server whose file cannot be removed goes on listening.
  if (!failure) {
    GDUnixSocket::closeWithError(&failure);
    removeAllClients();  // those that were accepted since they were removed first
  }
  if (informDelegate) {
    if (const auto told = delegate()) told->unixSocketServerDidClose(*this, failure);
  }
  return failure;
}

std::optional<Error> GDUnixSocketServer::unlinkSocket() {
  // A path with a NUL byte names no file; its beginning may be another server's.
  if (socketPath().find('\0') != std::string::npos) return {};
  return unlinkSocket(socketPath().c_str());
}

std::optional<Error> GDUnixSocketServer::unlinkSocket(const char* path) {
  struct stat status {};
  if (::stat(path, &status) != 0 || !S_ISSOCK(status.st_mode)) return {};
  if (::unlink(path) == 0) return {};
  return Error::gduds_errorForCode(GDUnixSocketErrorUnlinkFailed, lastErrorInfo());
}

}  // namespace seldial
