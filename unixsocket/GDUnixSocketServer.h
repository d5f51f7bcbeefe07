// A server: listens on a path, reads from every connection on a thread of its own, and tells its
// delegate.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <unordered_map>

#include "unixsocket/GDUnixSocket.h"
#include "unixsocket/GDUnixSocketServerDelegate.h"

namespace seldial {

/// A mistake of the caller's; the only exception of the library.
class InternalInconsistencyException : public std::logic_error {
 public:
  using std::logic_error::logic_error;
};

/// Its fd() is the listening socket; each accepted connection is a GDUnixSocket in the table, known
/// by its uniqueID.
///
/// The accept loop and the readers run on background threads, which take no signals, and keep the
/// server alive: a server that listens lives until it is closed, however few references are left.
/// Failures, threads and ownership are as GDUnixSocket says.
class GDUnixSocketServer final : public GDUnixSocket {
 public:
  /// Connections by their uniqueID.
  using ConnectedClients = std::unordered_map<std::string, std::shared_ptr<GDUnixSocket>>;

  /// A server for `socketPath` that does not listen yet; null when the path is rejected. The
  /// fragment size is the server's own: connections always read 256 bytes at a time.
  static std::shared_ptr<GDUnixSocketServer> initWithSocketPath(
      const std::string& socketPath, std::uint64_t andFragmentSize = kDefaultFragmentSize);
  /// Always null: there is no server without a path.
  static std::shared_ptr<GDUnixSocketServer> init() { return initWithSocketPath({}); }

  /// For initWithSocketPath() alone.
  GDUnixSocketServer(Key key, const std::string& socketPath, std::uint64_t fragmentSize);

  /// Closes, as close() does, if there is still a listening socket.
  ~GDUnixSocketServer() override;
  GDUnixSocketServer(const GDUnixSocketServer&) = delete;
  GDUnixSocketServer& operator=(const GDUnixSocketServer&) = delete;

  /// Who is told; not owned, null when there is none or it is gone.
  [[nodiscard]] std::shared_ptr<GDUnixSocketServerDelegate> delegate() const;
  /// From the next callback on. The caller keeps the delegate alive; null is none.
  void setDelegate(std::weak_ptr<GDUnixSocketServerDelegate> delegate);

  /// Held by every close from the removal of the socket file to the end of the callback, and while
  /// a failed accept is judged and told.
  [[nodiscard]] Mutex& closeLock() SELDIAL_RETURN_CAPABILITY(closeLock_) { return closeLock_; }

  /// A copy of the table as it is now, which keeps its connections alive but not open.
  [[nodiscard]] ConnectedClients connectedClients() const;

  /// listenWithMaxConnections() with 0.
  bool listenWithError(std::optional<Error>* error = nullptr);

  /// Makes the socket and its file and starts to accept. `maxConnections` is the backlog, the count
  /// of connections that may wait to be accepted; 0 is 5. A socket file that lies at the path is
  /// removed; any other file makes it fail. A server may listen again after a close. Errors:
  /// GDUnixSocketErrorBadSocket, GDUnixSocketErrorBindFailed, GDUnixSocketErrorListenFailed; but
  /// for the first the server is closed then, without a callback.
  bool listenWithMaxConnections(std::int32_t maxConnections, std::optional<Error>* error = nullptr);

  /// One write to a connection: the count of bytes that were taken, or -1 with an error as
  /// writeData()'s or GDUnixSocketErrorUnknownClient. The table is locked meanwhile: one slow write
  /// delays the other sends, new connections, and a close.
  std::int64_t sendData(const Data& data, const std::string& toClientWithID,
                        std::optional<Error>* error = nullptr);

  /// The same on a background thread, which then calls `completion` unless that is empty.
  void sendData(const Data& data, const std::string& toClientWithID, WriteCompletion completion);

  /// Always 0 and no error: a listening socket is never written; see sendData().
  std::int64_t writeData(const Data& data, std::optional<Error>* error = nullptr) override;
  using GDUnixSocket::writeData;

  /// Removes all connections and the socket file, stops accepting, and tells the delegate, also
  /// when it was closed before. Errors: GDUnixSocketErrorCloseFailed;
  /// GDUnixSocketErrorUnlinkFailed, with the server still listening. Not to be called in the
  /// callbacks that hold closeLock.
  bool closeWithError(std::optional<Error>* error = nullptr) override;

  /// The same, without a callback.
  bool closeSilently();

  /// The one or the other.
  bool closeWithError(std::optional<Error>* error, bool informDelegate);

  /// Puts a connection into the table. Throws InternalInconsistencyException when it is null.
  void addClient(const std::shared_ptr<GDUnixSocket>& client);

  /// Whether the table has an entry under the connection's uniqueID.
  [[nodiscard]] bool clientExists(const std::shared_ptr<GDUnixSocket>& client) const;

  /// Takes a connection out of the table and closes it: the error of that, or none, also when it
  /// was not there.
  std::optional<Error> removeAndCloseClient(const std::shared_ptr<GDUnixSocket>& client);

  /// Closes all connections and empties the table. Their readers end without a callback.
  void removeAllClients();

  /// Removes the file at the path if it is a socket; GDUnixSocketErrorUnlinkFailed when that fails.
  std::optional<Error> unlinkSocket();
  /// The same at any path, which need not be standardised. Relative ones are the process's.
  std::optional<Error> unlinkSocket(const char* path);

  /// Reads from a connection, and tells, until it leaves the table; blocks the calling thread.
  void readOnConnection(const std::shared_ptr<GDUnixSocket>& connection);

  /// Accepts connections until the server is closed; blocks the calling thread. listen starts it on
  /// a thread of its own.
  void mainLoop();

 private:
  std::shared_ptr<GDUnixSocketServer> self();

  std::optional<Error> openListening(std::int32_t backlog);
  bool bindTo(const std::string& path);
  bool listenOn(std::int32_t backlog);
  std::optional<Error> closeListening(bool informDelegate) SELDIAL_EXCLUDES(closeLock_);
  void startMainLoop(Descriptor::Serial listening);

  /// Whether there is no listening socket, once an opening or a close that is under way is done.
  bool isClosed() const SELDIAL_EXCLUDES(lock_);

  void acceptConnections(Descriptor::Serial listening);
  int acceptOn(Descriptor::Serial listening);
  void welcome(int accepted);
  void acceptFailed(Descriptor::Serial listening, int errorNumber);
  void endOfConnection(const std::shared_ptr<GDUnixSocket>& connection,
                       const std::optional<Error>& error);

  mutable Mutex delegateLock_;  ///< a lock of its own: callbacks must not wait for a slow write
  std::weak_ptr<GDUnixSocketServerDelegate> delegate_ SELDIAL_GUARDED_BY(delegateLock_);
  Mutex closeLock_;  ///< taken before any other lock
  ConnectedClients connectedClients_ SELDIAL_GUARDED_BY(lock_);
};

}  // namespace seldial
