// What the tests of the socket library share: a peer made of bare system calls, delegates that
// record, and what the process holds.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/TemporaryDirectory.h"
#include "tests/support/Waiting.h"
#include "unixsocket/GDUnixSocketClient.h"
#include "unixsocket/GDUnixSocketServer.h"

namespace seldial::tests {

/// The other side: a program that uses system calls alone, for its bytes such as SystemCalls.h does
/// not touch. Closes its descriptor.
class Peer {
 public:
  explicit Peer(int descriptor) : fd(descriptor) {}
  ~Peer() { leave(); }
  Peer(Peer&& other) noexcept : fd(other.fd) { other.fd = -1; }
  Peer& operator=(Peer&&) = delete;
  Peer(const Peer&) = delete;
  Peer& operator=(const Peer&) = delete;

  static Peer connectedTo(const std::string& path);

  /// Listens there; accepted() waits for one connection.
  static Peer listeningAt(const std::string& path, int backlog = 5);
  [[nodiscard]] Peer accepted() const;

  void send(const std::string& bytes) const;

  /// Exactly that many bytes, or fewer when the stream ends before.
  [[nodiscard]] std::string receive(std::size_t bytes) const;
  [[nodiscard]] std::string receiveToTheEnd() const;

  void leave();

  int fd;
};

/// A connected pair, one side of it inside a socket object.
struct SocketAndPeer {
  std::shared_ptr<GDUnixSocket> socket;
  Peer peer;
};
SocketAndPeer makePair(std::uint64_t fragmentSize = GDUnixSocket::kDefaultFragmentSize);

/// Lines that threads write and tests wait for.
class Journal {
 public:
  void add(const std::string& line);
  [[nodiscard]] std::vector<std::string> lines() const;
  [[nodiscard]] std::size_t count(const std::string& line) const;

  /// Waits until `line` was written that often; false when it never came.
  [[nodiscard]] bool waitFor(const std::string& line, std::size_t times = 1) const;
  void clear();

 private:
  [[nodiscard]] std::size_t countLocked(const std::string& line) const;

  mutable std::mutex mutex_;
  mutable std::condition_variable changed_;
  std::vector<std::string> lines_;
};

/// Writes "listening", "accept", "data BYTES", "disconnect", "read failed CODE", "accept failed
/// DESCRIPTION" and "close" or "close DESCRIPTION"; keeps the identifiers, and what was received.
class RecordingServerDelegate final : public GDUnixSocketServerDelegate {
 public:
  using Hook = std::function<void(GDUnixSocketServer& server, const std::string& clientID)>;

  void unixSocketServerDidStartListening(GDUnixSocketServer& server) override;
  void unixSocketServerDidClose(GDUnixSocketServer& server,
                                const std::optional<Error>& error) override;
  void unixSocketServerDidAcceptClientWithID(GDUnixSocketServer& server,
                                             const std::string& clientID) override;
  void unixSocketServerClientWithIDDidDisconnect(GDUnixSocketServer& server,
                                                 const std::string& clientID) override;
  void unixSocketServerDidReceiveData(GDUnixSocketServer& server, const Data& data,
                                      const std::string& clientID) override;
  void unixSocketServerDidFailToReadForClientID(GDUnixSocketServer& server,
                                                const std::string& clientID,
                                                const Error& error) override;
  void unixSocketServerDidFailToAcceptConnection(GDUnixSocketServer& server,
                                                 const Error& error) override;

  [[nodiscard]] std::vector<std::string> clientIDs() const;
  [[nodiscard]] std::string received() const;

  Journal journal;
  // Run in the callback, before its line is written. Set them before the server listens.
  std::function<void(GDUnixSocketServer& server)> onListening;
  Hook onAccept;
  Hook onData;
  Hook onDisconnect;
  std::function<void(GDUnixSocketServer& server)> onClose;

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> clientIDs_;
  std::string received_;
};

/// Writes "data BYTES" and "failed CODE"; keeps what was received.
class RecordingClientDelegate final : public GDUnixSocketClientDelegate {
 public:
  void unixSocketClientDidReceiveData(GDUnixSocketClient& client, const Data& data) override;
  void unixSocketClientDidFailToReadWithError(GDUnixSocketClient& client,
                                              const Error& error) override;

  Journal journal;
  std::function<void(GDUnixSocketClient& client)> onData;  ///< before the line is written
};

[[nodiscard]] std::size_t openDescriptors();
[[nodiscard]] std::size_t runningThreads();
[[nodiscard]] bool exists(const std::string& path);

/// The calling thread's number, as isAsleepOrGone() takes it.
[[nodiscard]] int threadNumber();

/// Whether that thread of this process waits in the system for something, or has ended.
[[nodiscard]] bool isAsleepOrGone(int thread);

}  // namespace seldial::tests
