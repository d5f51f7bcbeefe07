// The UC client's listening socket, played by a test.
#pragma once

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <optional>
#include <stdexcept>
#include <string>

namespace seldial::tests {

/// Listens at a path and hands over one message per connection. A sender that connects, writes and
/// closes before anybody accepts is served by the kernel's queue, so no thread is needed.
class UcListener {
 public:
  explicit UcListener(const std::string& path, int backlog = 64)
      : fd_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    // The socket interface passes every address as this type.
    const auto* generic = reinterpret_cast<const sockaddr*>(&address);
    if (bind(fd_, generic, sizeof address) != 0 || listen(fd_, backlog) != 0) {
      throw std::runtime_error("cannot listen at " + path);
    }
  }
  ~UcListener() { ::close(fd_); }
  UcListener(const UcListener&) = delete;
  UcListener& operator=(const UcListener&) = delete;

  /// The whole text of the next connection, up to its end; nothing when none comes in time.
  [[nodiscard]] std::optional<std::string> nextMessage(int milliseconds = 30000) const {
    pollfd readable{fd_, POLLIN, 0};
    if (poll(&readable, 1, milliseconds) != 1) return {};
    const int connection = accept(fd_, nullptr, nullptr);
    std::string message;
    char buffer[65536];
    for (ssize_t count = read(connection, buffer, sizeof buffer); count > 0;
         count = read(connection, buffer, sizeof buffer)) {
      message.append(buffer, static_cast<std::size_t>(count));
    }
    ::close(connection);
    return message;
  }

  /// Whether a connection is waiting right now.
  [[nodiscard]] bool hasConnection() const {
    pollfd readable{fd_, POLLIN, 0};
    return poll(&readable, 1, 0) == 1;
  }

  [[nodiscard]] int descriptor() const { return fd_; }

 private:
  int fd_;
};

}  // namespace seldial::tests
