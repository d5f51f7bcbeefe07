// The systems of this family know neither MSG_NOSIGNAL nor an end of accept(): a listening socket
// cannot be shut down (ENOTCONN), and closing it would free its number while a thread is on its way
// into the call.
#include "platform/Sockets.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <mutex>

namespace seldial::platform {
namespace {

int closedOnExec(int number) {
  ::fcntl(number, F_SETFD, FD_CLOEXEC);
  return number;
}

void setNonBlocking(int number) {
  ::fcntl(number, F_SETFL, ::fcntl(number, F_GETFL) | O_NONBLOCK);
}

/// An accepted connection has its flags from the listening socket.
void setBlocking(int number) {
  ::fcntl(number, F_SETFL, ::fcntl(number, F_GETFL) & ~O_NONBLOCK);
}

/// Never blocks in accept(), only in poll(), which also watches a pipe: once that is closed at the
/// other end, it is readable for ever, to whoever comes when.
class PipeToEnd final : public Accepting {
 public:
  PipeToEnd() = default;
  ~PipeToEnd() override {
    if (ended_ != -1) ::close(ended_);
    if (end_ != -1) ::close(end_);
  }
  PipeToEnd(const PipeToEnd&) = delete;
  PipeToEnd& operator=(const PipeToEnd&) = delete;

  int accept(int number) override {
    if (!isReady(number)) return -1;
    int accepted = -1;
    do {
      if (!waitFor(number)) return -1;
      accepted = ::accept(number, nullptr, nullptr);
    } while (accepted == -1 && errno == EWOULDBLOCK);  // another thread was faster
    if (accepted != -1) setBlocking(accepted);
    return accepted;
  }

  void end(int /*number*/) override {
    const std::lock_guard lock(mutex_);
    over_ = true;
    if (end_ != -1) ::close(end_);
    end_ = -1;
  }

 private:
  /// False, and errno: there is no descriptor left for the pipe, or end() was called before.
  bool isReady(int number) {
    const std::lock_guard lock(mutex_);
    if (over_) errno = ECONNABORTED;
    if (over_ || ended_ != -1) return !over_;
    int ends[2];
    if (::pipe(ends) == -1) return false;
    ended_ = closedOnExec(ends[0]);
    end_ = closedOnExec(ends[1]);
    setNonBlocking(number);
    return true;
  }

  /// False, and errno: the wait failed, or has been ended.
  bool waitFor(int number) {
    pollfd watched[] = {{number, POLLIN, 0}, {ended_, POLLIN, 0}};
    if (::poll(watched, 2, -1) == -1) return false;
    if (watched[1].revents != 0) {
      errno = ECONNABORTED;
    } else if ((watched[0].revents & (POLLERR | POLLHUP | POLLNVAL)) != 0) {
      errno = EINVAL;  // it accepts no longer, and would say so again and again
    } else {
      return true;
    }
    return false;
  }

  std::mutex mutex_;  ///< guards over_ and end_, and ended_ until it is open: then it stays
  bool over_ = false;
  int ended_ = -1;  ///< the reading end of the pipe
  int end_ = -1;    ///< the writing end
};

/// Refused by what is no socket, and by a socket that both sides have shut down; but a connection
/// has it from its listening socket.
void sendNoSignals(int number) {
  const int on = 1;
  ::setsockopt(number, SOL_SOCKET, SO_NOSIGPIPE, &on, sizeof on);
}

}  // namespace

int fittedOut(int number) {
  if (number == -1) return number;
  sendNoSignals(number);
  return closedOnExec(number);
}

std::int64_t writeOnce(int number, const void* bytes, std::size_t size) {
  sendNoSignals(number);  // for the sockets that others have made
  return ::write(number, bytes, size);
}

std::unique_ptr<Accepting> makeAccepting() {
  return std::make_unique<PipeToEnd>();
}

}  // namespace seldial::platform
