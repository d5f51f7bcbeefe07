#include "platform/System.h"

#include <poll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>

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

bool fillWithRandom(void* bytes, std::size_t size) {
  return getentropy(bytes, size) == 0;
}

std::string errorText(int number) {
  char buffer[256];
  return strerror_r(number, buffer, sizeof buffer);  // GNU's, which may return a constant text
}

std::string executablePath() {
  char path[PATH_MAX];
  return realpath("/proc/self/exe", path) != nullptr ? path : "";
}

bool endWithParent(pid_t parent) {
  if (prctl(PR_SET_PDEATHSIG, SIGTERM) != 0) return false;
  if (getppid() == parent) return true;
  errno = ESRCH;  // the parent ended before the request, so no signal will come
  return false;
}

const char* uriOpener() {
  return "xdg-open";
}

std::optional<pid_t> socketOwner(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) return std::nullopt;
  std::memcpy(address.sun_path, path.c_str(), path.size());
  // Non-blocking: a frozen program accepts nothing, and its backlog may be full.
  const int connection = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (connection == -1) return std::nullopt;
  ucred peer{};
  socklen_t size = sizeof peer;
  const bool known =
      connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
      getsockopt(connection, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0;
  close(connection);
  return known ? std::optional(peer.pid) : std::nullopt;
}

}  // namespace seldial::platform
