#include "unixsocket/GDUnixSocketClient.h"

#include <sys/socket.h>
#include <sys/time.h>

#include <utility>

#include "unixsocket/SocketPath.h"

namespace seldial {
namespace {

void setSendTimeoutOf(int number, std::chrono::milliseconds timeout) {
  constexpr int kMilliseconds = 1000;
  timeval value{};
  value.tv_sec = timeout.count() / kMilliseconds;
  value.tv_usec = (timeout.count() % kMilliseconds) * kMilliseconds;
  ::setsockopt(number, SOL_SOCKET, SO_SNDTIMEO, &value, sizeof value);
}

}  // namespace

std::shared_ptr<GDUnixSocketClient> GDUnixSocketClient::initWithSocketPath(
    const std::string& socketPath, std::uint64_t andFragmentSize, const Queue& queue) {
  return make<GDUnixSocketClient>(socketPath, andFragmentSize, queue);
}

std::shared_ptr<GDUnixSocketClientDelegate> GDUnixSocketClient::delegate() const {
  const MutexLock lock(delegateLock_);
  return delegate_.lock();
}

void GDUnixSocketClient::setDelegate(std::weak_ptr<GDUnixSocketClientDelegate> delegate) {
  const MutexLock lock(delegateLock_);
  delegate_ = std::move(delegate);
}

bool GDUnixSocketClient::connectWithAutoRead(bool autoRead, std::optional<Error>* error) {
  std::optional<Error> failure = openConnection();
  const bool connected = !failure;
  handError(error, std::move(failure));
  if (!connected) return false;
  setStateOf(descriptor().generation(), GDUnixSocketStateConnected);
  if (autoRead) readLoop();
  return true;
}

void GDUnixSocketClient::connectWithAutoRead(bool /*autoRead*/,
                                             const ConnectCompletion& /*completion*/) {}

std::optional<Error> GDUnixSocketClient::openConnection() {
  if (auto failure = openSocket()) return failure;
  const std::string& path = socketPath();
  if (!SocketAddress(path).names(path)) {
    close();
    // Kept on purpose: the code of a failed listen, as in the server.
    return Error::gduds_errorForCode(GDUnixSocketErrorListenFailed,
                                     "The socket path is inconsistent");
  }
  if (!connectTo(path)) {
    auto failure = Error::gduds_errorForCode(GDUnixSocketErrorConnectFailed, lastErrorInfo());
    close();
    return failure;
  }
  return {};
}

bool GDUnixSocketClient::connectTo(const std::string& path) {
  const SocketAddress address(path);
  const std::chrono::milliseconds timeout = sendTimeout_;
  const Descriptor::Use use(descriptor());
  if (timeout > timeout.zero()) setSendTimeoutOf(use.number(), timeout);
  return ::connect(use.number(), address.get(), SocketAddress::size()) == 0;
}

std::optional<Data> GDUnixSocketClient::readWithError(std::optional<Error>* error) {
  return readAndNotify(descriptor().generation(), error);
}

std::optional<Data> GDUnixSocketClient::readAndNotify(Descriptor::Generation connection,
                                                      std::optional<Error>* error) {
  std::optional<Error> failure;
  std::optional<Data> data = readOf(connection, &failure);
  if (const auto receiver = delegate()) {
    if (failure) {
      receiver->unixSocketClientDidFailToReadWithError(*this, *failure);
    } else if (data) {
      receiver->unixSocketClientDidReceiveData(*this, *data);
    }
  }
  handError(error, std::move(failure));
  return data;
}

void GDUnixSocketClient::readLoop() {
  queue()->async([self = shared_from_this(), connection = descriptor().generation()] {
    auto& client = static_cast<GDUnixSocketClient&>(*self);
    while (client.readAndNotify(connection, nullptr)) {
    }
    // This connection only: the client may have been closed and connected again.
    client.closeDescriptor(connection, nullptr);
  });
}

}  // namespace seldial
