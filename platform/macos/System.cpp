#include "platform/System.h"

#include <fcntl.h>
#include <mach-o/dyld.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <mutex>

namespace seldial::platform {
namespace {

int setCloseOnExec(int number) {
  ::fcntl(number, F_SETFD, FD_CLOEXEC);
  return number;
}

void setNonBlocking(int number) {
  ::fcntl(number, F_SETFL, ::fcntl(number, F_GETFL) | O_NONBLOCK);
}

/// An accepted connection inherits the flags of the listening socket.
void setBlocking(int number) {
  ::fcntl(number, F_SETFL, ::fcntl(number, F_GETFL) & ~O_NONBLOCK);
}

/// Replaces MSG_NOSIGNAL, which macOS lacks. Fails on descriptors that are not sockets, and on a
/// socket that both sides have shut down.
void disableSigpipe(int number) {
  const int on = 1;
  ::setsockopt(number, SOL_SOCKET, SO_NOSIGPIPE, &on, sizeof on);
}

/// Returns `number`. For -1 it does nothing and preserves errno.
int setSocketFlags(int number) {
  if (number == -1) return number;
  disableSigpipe(number);
  return setCloseOnExec(number);
}

/// macOS has no way to end accept(): a listening socket cannot be shut down (ENOTCONN), and closing
/// it would free its number while another thread is about to accept on it. So this never blocks in
/// accept(), only in poll(), which also watches a pipe. Closing the write end makes the read end
/// permanently readable, for every current and future poll().
class PipeAcceptor final : public Acceptor {
 public:
  PipeAcceptor() = default;
  ~PipeAcceptor() override {
    if (readEnd_ != -1) ::close(readEnd_);
    if (writeEnd_ != -1) ::close(writeEnd_);
  }
  PipeAcceptor(const PipeAcceptor&) = delete;
  PipeAcceptor& operator=(const PipeAcceptor&) = delete;

  int accept(int number) override {
    if (!prepare(number)) return -1;
    int accepted = -1;
    do {
      if (!waitFor(number)) return -1;
      accepted = ::accept(number, nullptr, nullptr);
    } while (accepted == -1 && errno == EWOULDBLOCK);  // another thread took it
    if (accepted != -1) setBlocking(accepted);
    return setSocketFlags(accepted);
  }

  void end(int /*number*/) override {
    const std::lock_guard lock(mutex_);
    ended_ = true;
    if (writeEnd_ != -1) ::close(writeEnd_);
    writeEnd_ = -1;
  }

 private:
  /// Opens the pipe the first time. False and errno: no descriptor is left for it, or end() was
  /// called.
  bool prepare(int number) {
    const std::lock_guard lock(mutex_);
    if (ended_) errno = ECONNABORTED;
    if (ended_ || readEnd_ != -1) return !ended_;
    int ends[2];
    if (::pipe(ends) == -1) return false;
    readEnd_ = setCloseOnExec(ends[0]);
    writeEnd_ = setCloseOnExec(ends[1]);
    setNonBlocking(number);
    return true;
  }

  /// False and errno: the wait failed, or end() was called.
  bool waitFor(int number) {
    pollfd watched[] = {{number, POLLIN, 0}, {readEnd_, POLLIN, 0}};
    if (::poll(watched, 2, -1) == -1) return false;
    if (watched[1].revents != 0) {
      errno = ECONNABORTED;
    } else if ((watched[0].revents & (POLLERR | POLLHUP | POLLNVAL)) != 0) {
      errno = EINVAL;  // no longer listening; without this, accept() would spin
    } else {
      return true;
    }
    return false;
  }

  std::mutex mutex_;  ///< guards the fields below; readEnd_ never changes once it is open
  bool ended_ = false;
  int readEnd_ = -1;
  int writeEnd_ = -1;
};

}  // namespace

int makeStreamSocket() {
  return setSocketFlags(::socket(AF_UNIX, SOCK_STREAM, 0));
}

std::int64_t writeOnce(int number, const void* bytes, std::size_t size) {
  disableSigpipe(number);  // for sockets that were not made here
  return ::write(number, bytes, size);
}

std::int64_t writeNow(int number, const void* bytes, std::size_t size) {
  disableSigpipe(number);
  return ::send(number, bytes, size, MSG_DONTWAIT);
}

/// macOS reports POLLHUP as soon as the peer sends no more, also while there is data to read.
bool peerHasClosed(int number) {
  pollfd watched{number, POLLIN, 0};
  return ::poll(&watched, 1, 0) == 1 && (watched.revents & POLLHUP) != 0;
}

std::unique_ptr<Acceptor> makeAcceptor() {
  return std::make_unique<PipeAcceptor>();
}

bool fillWithRandom(void* bytes, std::size_t size) {
  arc4random_buf(bytes, size);  // OS X 10.11 has no getentropy()
  return true;
}

std::string errorText(int number) {
  char buffer[256] = "";
  (void)strerror_r(number, buffer, sizeof buffer);  // fills the buffer for an unknown number, too
  return buffer;
}

std::string executablePath() {
  char started[PATH_MAX];  // which may be a link
  std::uint32_t size = sizeof started;
  if (_NSGetExecutablePath(started, &size) != 0) return "";
  char path[PATH_MAX];
  return realpath(started, path) != nullptr ? path : "";
}

bool endWithParent(pid_t /*parent*/) {
  return true;
}

const char* uriOpener() {
  return "/usr/bin/open";
}

std::optional<pid_t> socketOwner(const std::string& /*path*/) {
  return std::nullopt;
}

}  // namespace seldial::platform
