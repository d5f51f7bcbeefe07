#include "unixsocket/GDUnixSocketClient.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <utility>

#include "platform/System.h"
#include "unixsocket/SocketPath.h"

namespace seldial {
namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

/// How long one connect(2) waits, at most, for space in the server's backlog. Nothing can interrupt
/// it: a close on another thread is noticed between two calls.
constexpr milliseconds kConnectWait{50};

/// The time left, rounded up, and at most `most`.
milliseconds timeLeft(Clock::time_point deadline, milliseconds most) {
  const auto now = Clock::now();
  if (deadline <= now) return milliseconds::zero();
  if (deadline - now >= most) return most;
  return std::chrono::ceil<milliseconds>(deadline - now);
}

/// `timeout` is less than a second; zero means no timeout.
void setSendTimeoutOf(int number, milliseconds timeout) {
  timeval value{};
  value.tv_usec = static_cast<decltype(value.tv_usec)>(std::chrono::microseconds(timeout).count());
  ::setsockopt(number, SOL_SOCKET, SO_SNDTIMEO, &value, sizeof value);
}

/// Waits until the socket can be written to, or its peer is gone. False when the deadline passes
/// first.
bool waitUntilWritable(int number, Clock::time_point deadline) {
  constexpr milliseconds kMaxWait = std::chrono::hours(1);
  for (;;) {
    const auto left = timeLeft(deadline, kMaxWait);
    if (left == milliseconds::zero()) return false;
    pollfd watched{number, POLLOUT, 0};
    if (::poll(&watched, 1, static_cast<int>(left.count())) > 0) return true;
  }
}

/// Writes until all is written, the deadline has passed or a write fails. Returns the count of
/// bytes written; -1 and errno if there are none.
std::int64_t writeUntil(int number, const Data& data, Clock::time_point deadline) {
  std::size_t written = 0;
  while (written < data.size()) {
    const auto count = platform::writeNow(number, data.data() + written, data.size() - written);
    if (count >= 0) {
      written += static_cast<std::size_t>(count);
    } else if (errno != EAGAIN || !waitUntilWritable(number, deadline)) {
      if (written == 0) return -1;
      break;
    }
  }
  return static_cast<std::int64_t>(written);
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
  storeError(error, std::move(failure));
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
    auto failure = errorOfFailedCall(GDUnixSocketErrorConnectFailed, fd());
    close();
    return failure;
  }
  return {};
}

bool GDUnixSocketClient::connectTo(const std::string& path) {
  const SocketAddress address(path);
  const milliseconds timeout = sendTimeout_;
  const auto deadline =
      timeout > milliseconds::zero() ? Clock::now() + timeout : Clock::time_point::max();
  deadline_ = deadline;
  const Descriptor::Use use(descriptor());
  for (;;) {
    const auto begin = Clock::now();
    const auto wait = std::max(timeLeft(deadline, kConnectWait), milliseconds(1));
    setSendTimeoutOf(use.number(), wait);
    if (::connect(use.number(), address.get(), SocketAddress::size()) == 0) break;
    // A wait also ends when the process is stopped and continued, or the system sleeps.
    const bool interrupted = errno == EINTR && timeout > milliseconds::zero();
    // EAGAIN at once is a failure; after a wait it means that the backlog is still full.
    const bool full = errno == EAGAIN && Clock::now() - begin >= wait / 2;
    if (!interrupted && !full) return false;
    if (Clock::now() >= deadline) return false;
    if (fd() != use.number()) {
      errno = ECANCELED;
      return false;
    }
  }
  // With a deadline, writes do not block anyway.
  if (deadline == Clock::time_point::max()) setSendTimeoutOf(use.number(), milliseconds::zero());
  return true;
}

std::int64_t GDUnixSocketClient::writeData(const Data& data, std::optional<Error>* error) {
  const auto deadline = deadline_.load();
  if (deadline == Clock::time_point::max()) return GDUnixSocket::writeData(data, error);
  const Descriptor::Use use(descriptor());
  if (data.empty() || use.number() == -1) return write(data, use.number(), error);
  storeError(error, {});
  const std::int64_t count = writeUntil(use.number(), data, deadline);
  if (count == -1) storeError(error, errorOfFailedCall(GDUnixSocketErrorWriteFailed, use.number()));
  return count;
}

std::int64_t GDUnixSocketClient::writeData(const DataPieces& pieces, std::optional<Error>* error) {
  storeError(error, {});
  std::int64_t written = 0;
  pieces([&](std::string_view piece) {
    // Once something is written, a failure is a short count.
    const bool first = written == 0;
    const std::int64_t count = writeData(Data(piece), first ? error : nullptr);
    if (first || count > 0) written += count;
    return count == static_cast<std::int64_t>(piece.size());
  });
  return written;
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
  storeError(error, std::move(failure));
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
