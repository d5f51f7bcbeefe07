// Recording delegates for the tests of the socket library, and the state of this process.
#pragma once

#include <cstddef>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/Journal.h"
#include "tests/support/ProcessState.h"
#include "tests/support/Sockets.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/Waiting.h"
#include "unixsocket/GDUnixSocketClient.h"
#include "unixsocket/GDUnixSocketServer.h"

namespace seldial::tests {

/// A connected pair of sockets, one of them in a socket object.
struct SocketAndPeer {
  std::shared_ptr<GDUnixSocket> socket;
  Peer peer;
};
SocketAndPeer makePair(std::uint64_t fragmentSize = GDUnixSocket::kDefaultFragmentSize,
                       const GDUnixSocket::Queue& queue = platform::sharedBackgroundQueue());

/// Records "listening", "accept", "data BYTES", "disconnect", "read failed CODE", "accept failed
/// DESCRIPTION" and "close" or "close DESCRIPTION"; also keeps the identifiers and the received
/// data.
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
  // Run in the callback, before its line is added. Set them before the server listens.
  std::function<void(GDUnixSocketServer& server)> onListening;
  Hook onAccept;
  Hook onData;
  Hook onDisconnect;
  std::function<void(GDUnixSocketServer& server)> onClose;
  std::function<void(GDUnixSocketServer& server)> onAcceptFailed;

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> clientIDs_;
  std::string received_;
};

/// Records "data BYTES" and "failed CODE"; also keeps the received data.
class RecordingClientDelegate final : public GDUnixSocketClientDelegate {
 public:
  void unixSocketClientDidReceiveData(GDUnixSocketClient& client, const Data& data) override;
  void unixSocketClientDidFailToReadWithError(GDUnixSocketClient& client,
                                              const Error& error) override;

  Journal journal;
  std::function<void(GDUnixSocketClient& client)> onData;  ///< before the line is added
};

[[nodiscard]] bool exists(const std::string& path);

/// The ID of the calling thread, for isAsleepOrGone().
[[nodiscard]] int threadNumber();

/// Whether that thread of this process is blocked in a system call or has ended.
[[nodiscard]] bool isAsleepOrGone(int thread);

}  // namespace seldial::tests
