// The other side of a socket, played by a test with bare system calls.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace seldial::tests {

/// One end of a connection, or a listening socket. Its bytes go through calls that
/// tests/unixsocket/SystemCalls.h does not intercept.
class Peer {
 public:
  /// Takes over the descriptor.
  explicit Peer(int descriptor) : fd(descriptor) {}
  ~Peer() { leave(); }
  Peer(Peer&& other) noexcept : fd(other.fd) { other.fd = -1; }
  Peer& operator=(Peer&&) = delete;
  Peer(const Peer&) = delete;
  Peer& operator=(const Peer&) = delete;

  /// Not connected() where nobody listens.
  static Peer connectedTo(const std::string& path);
  [[nodiscard]] bool connected() const { return fd != -1; }

  /// Throws std::runtime_error where it cannot listen.
  static Peer listeningAt(const std::string& path, int backlog = 5);
  /// Waits for one connection.
  [[nodiscard]] Peer accepted() const;

  /// False when the reader is gone before everything was sent.
  bool send(const std::string& bytes) const;

  /// Exactly that many bytes, or fewer when the stream ends before.
  [[nodiscard]] std::string receive(std::size_t bytes) const;
  [[nodiscard]] std::string receiveToTheEnd() const;

  void leave();

  int fd;
};

/// The UC client's listening socket. A sender that connects, writes and closes before anybody
/// accepts is served by the kernel's queue, so no thread is needed.
class UcListener {
 public:
  explicit UcListener(const std::string& path, int backlog = 64)
      : listening_(Peer::listeningAt(path, backlog)) {}

  /// The whole text of the next connection, up to its end; nothing when none comes in time.
  [[nodiscard]] std::optional<std::string> nextMessage() const;

  /// Whether a connection is waiting right now.
  [[nodiscard]] bool hasConnection() const;

  [[nodiscard]] Peer accepted() const { return listening_.accepted(); }

 private:
  Peer listening_;
};

/// Connects to a socket path, sends `chunks` one after the other, and disconnects. Throws
/// std::runtime_error where nobody listens or the connection is closed before the end.
void sendCommand(const std::string& path, const std::vector<std::string>& chunks);

}  // namespace seldial::tests
