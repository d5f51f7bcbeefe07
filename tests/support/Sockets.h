// The peer of a socket under test, with bare system calls.
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

  /// Not connected() if nobody listens.
  static Peer connectedTo(const std::string& path);
  [[nodiscard]] bool connected() const { return fd != -1; }

  /// Throws std::runtime_error if it cannot listen.
  static Peer listeningAt(const std::string& path, int backlog = 5);
  /// Waits for one connection.
  [[nodiscard]] Peer accepted() const;

  /// False if the reader is gone before everything was sent.
  bool send(const std::string& bytes) const;

  /// Exactly that many bytes, or fewer if the stream ends before.
  [[nodiscard]] std::string receive(std::size_t bytes) const;
  [[nodiscard]] std::string receiveToTheEnd() const;

  void leave();

  int fd;
};

/// The descriptor of a connection, which the caller owns. Throws std::runtime_error if nobody
/// listens.
int connectTo(const std::string& path);

/// The UC client's listening socket. It needs no thread: a sender can connect, write and close
/// before the connection is accepted.
class UcListener {
 public:
  explicit UcListener(const std::string& path, int backlog = 64)
      : listening_(Peer::listeningAt(path, backlog)) {}

  /// The whole text of the next connection, up to its end; nothing if none arrives in time.
  [[nodiscard]] std::optional<std::string> nextMessage() const;

  /// Whether a connection is waiting right now.
  [[nodiscard]] bool hasConnection() const;

  [[nodiscard]] Peer accepted() const { return listening_.accepted(); }

 private:
  Peer listening_;
};

/// Connects to a socket path, sends `chunks` one after the other, and disconnects. Throws
/// std::runtime_error if nobody listens or the connection is closed before the end.
void sendCommand(const std::string& path, const std::vector<std::string>& chunks);

}  // namespace seldial::tests
