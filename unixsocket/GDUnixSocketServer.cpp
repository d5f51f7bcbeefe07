#include "unixsocket/GDUnixSocketServer.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <utility>

#include "unixsocket/SocketPath.h"

namespace seldial {
namespace {

constexpr std::int32_t kDefaultBacklog = 5;

/// Time from a successful listen to the start of the accept loop.
constexpr std::chrono::milliseconds kAcceptDelay{1};

}  // namespace

std::shared_ptr<GDUnixSocketServer> GDUnixSocketServer::initWithSocketPath(
    const std::string& socketPath, std::uint64_t andFragmentSize, const Queue& queue) {
  return make<GDUnixSocketServer>(socketPath, andFragmentSize, queue);
}

GDUnixSocketServer::~GDUnixSocketServer() {
  if (fd() != -1) GDUnixSocketServer::closeWithError(nullptr);
  if (fd() != -1) closeSilently();  // the close callback made it listen again
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
      startListening(maxConnections == 0 ? kDefaultBacklog : maxConnections);
  const bool listening = !failure;
  storeError(error, std::move(failure));
  if (!listening) return false;
  if (const auto receiver = delegate()) receiver->unixSocketServerDidStartListening(*this);
  return true;
}

std::optional<Error> GDUnixSocketServer::startListening(std::int32_t backlog) {
  const MutexLock lock(listeningLock_);
  if (auto failure = openListening(backlog)) return failure;
  startMainLoop(descriptor().generation());
  return {};
}

std::optional<Error> GDUnixSocketServer::openListening(std::int32_t backlog) {
  if (auto failure = openSocket()) return failure;
  removeAllClients();  // of an earlier listen that was not closed
  const std::string& path = socketPath();
  if (!SocketAddress(path).names(path)) {
    closeListening();
    // Kept on purpose: the code of a failed listen, as in the client.
    return Error::gduds_errorForCode(GDUnixSocketErrorListenFailed,
                                     "The socket path is inconsistent");
  }
  unlinkSocket(path.c_str());  // a dead server's file; if this fails, bind reports it
  if (!bindTo(path)) {
    closeListening();
    // Kept on purpose: built after the close, with descriptor -1 and the errno that the close left.
    return errorOfFailedCall(GDUnixSocketErrorBindFailed, fd());
  }
  socketFile_ = fileAt(path).value_or(FileIdentity{});
  pathWasTakenOver_ = false;
  if (!listenOn(backlog)) {
    closeListening();
    return errorOfFailedCall(GDUnixSocketErrorListenFailed, fd());
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

void GDUnixSocketServer::startMainLoop(Descriptor::Generation listening) {
  queue()->after(kAcceptDelay, [weak = weak_from_this(), listening] {
    const auto server = std::static_pointer_cast<GDUnixSocketServer>(weak.lock());
    if (server) server->acceptConnections(listening);
  });
  setStateOf(listening, GDUnixSocketStateListening);
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
  std::optional<Error> failure;
  {
    const MutexLock closing(closeLock_);
    {
      const MutexLock lock(listeningLock_);
      failure = closeListening();
    }
    if (informDelegate) notifyClosed(failure);
  }
  const bool closed = !failure;
  storeError(error, std::move(failure));
  return closed;
}

void GDUnixSocketServer::closeGeneration(Descriptor::Generation listening) {
  const MutexLock closing(closeLock_);
  std::optional<Error> failure;
  {
    const MutexLock lock(listeningLock_);
    if (!descriptor().holds(listening)) return;
    removeAllClients();
    failure = closeListening();
  }
  notifyClosed(failure);
}

void GDUnixSocketServer::notifyClosed(const std::optional<Error>& error) {
  if (const auto receiver = delegate()) receiver->unixSocketServerDidClose(*this, error);
}

std::optional<Error> GDUnixSocketServer::closeListening() {
  std::optional<Error> failure = unlinkSocketFile();
  // Kept on purpose: a server whose file cannot be removed keeps listening.
  if (failure) return failure;
  GDUnixSocket::closeWithError(&failure);
  removeAllClients();  // those accepted since the caller removed them
  return failure;
}

/// Examines the path even if there is nothing to remove: a failed listen reports the resulting
/// errno.
std::optional<Error> GDUnixSocketServer::unlinkSocketFile() {
  const std::optional<FileIdentity> present = fileAt(socketPath());
  if (!present || !socketFile_) return {};
  const bool identityIsKnown = *socketFile_ != FileIdentity{};
  if (identityIsKnown && *present != *socketFile_) {
    pathWasTakenOver_ = true;
  } else if (::unlink(socketPath().c_str()) != 0) {
    return errorOfFailedCall(GDUnixSocketErrorUnlinkFailed, fd());
  }
  socketFile_.reset();
  return {};
}

std::optional<GDUnixSocketServer::FileIdentity> GDUnixSocketServer::fileAt(
    const std::string& path) {
  // A path with a NUL byte names no file; the part before it may be another server's.
  if (path.find('\0') != std::string::npos) return {};
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return {};
  return FileIdentity{status.st_dev, status.st_ino};
}

std::optional<Error> GDUnixSocketServer::unlinkSocket() {
  if (socketPath().find('\0') != std::string::npos) return {};
  return unlinkSocket(socketPath().c_str());
}

std::optional<Error> GDUnixSocketServer::unlinkSocket(const char* path) {
  struct stat status {};
  if (::stat(path, &status) != 0 || !S_ISSOCK(status.st_mode)) return {};
  if (::unlink(path) == 0) return {};
  return errorOfFailedCall(GDUnixSocketErrorUnlinkFailed, fd());
}

}  // namespace seldial
