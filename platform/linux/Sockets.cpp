#include "platform/Sockets.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

namespace seldial::platform {
namespace {

/// On Linux a listening socket can be shut down, which ends accept() for good.
class ShutdownAcceptor final : public Acceptor {
 public:
  int accept(int number) override { return ::accept4(number, nullptr, nullptr, SOCK_CLOEXEC); }
  void end(int number) override { ::shutdown(number, SHUT_RDWR); }
};

}  // namespace

int makeStreamSocket() {
  return ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
}

std::int64_t writeOnce(int number, const void* bytes, std::size_t size) {
  const auto written = ::send(number, bytes, size, MSG_NOSIGNAL);
  if (written != -1 || errno != ENOTSOCK) return written;
  return ::write(number, bytes, size);
}

std::int64_t writeNow(int number, const void* bytes, std::size_t size) {
  return ::send(number, bytes, size, MSG_NOSIGNAL | MSG_DONTWAIT);
}

bool peerHasClosed(int number) {
  pollfd watched{number, POLLRDHUP, 0};
  return ::poll(&watched, 1, 0) == 1 && (watched.revents & (POLLRDHUP | POLLHUP)) != 0;
}

std::unique_ptr<Acceptor> makeAcceptor() {
  return std::make_unique<ShutdownAcceptor>();
}

}  // namespace seldial::platform
