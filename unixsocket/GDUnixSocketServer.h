// The server: listens at a path, reads each connection on a separate thread and calls its delegate.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <unordered_map>

#include "unixsocket/GDUnixSocket.h"

namespace seldial {

class GDUnixSocketServer;

/// Receives the callbacks of a server. Override those of interest; each does nothing by default.
///
/// Callbacks come on the thread named at each, concurrently for different connections. Those of one
/// connection come in order: accept, then data, then disconnect or read failure, each after the
/// previous one has returned. If a peer has closed its connection before the next connection is
/// accepted, all callbacks of the first come before the accept of the second: clients that connect
/// one after another, never two at a time, are reported one after another. The server never waits
/// for a connection that is still open.
///
/// The server holds no lock during a callback except where noted. References are valid during the
/// callback. A callback must not throw.
class GDUnixSocketServerDelegate {
 public:
  GDUnixSocketServerDelegate() = default;
  virtual ~GDUnixSocketServerDelegate() = default;
  GDUnixSocketServerDelegate(const GDUnixSocketServerDelegate&) = delete;
  GDUnixSocketServerDelegate& operator=(const GDUnixSocketServerDelegate&) = delete;

  /// Once per successful listen, on the thread that listens. The server may be closed here.
  virtual void unixSocketServerDidStartListening(GDUnixSocketServer& /*server*/) {}

  /// At the end of every close that informs the delegate, even a repeated one, on the thread that
  /// closes. The server's closeLock is held: do not close the server here; it may listen again. The
  /// last reference to the server may be going away: do not store a new one.
  virtual void unixSocketServerDidClose(GDUnixSocketServer& /*server*/,
                                        const std::optional<Error>& /*error*/) {}

  /// A connection has been added to the table and can be sent to. On the accept thread, which
  /// accepts no other connection meanwhile; nothing is read from this connection before the
  /// callback returns.
  virtual void unixSocketServerDidAcceptClientWithID(GDUnixSocketServer& /*server*/,
                                                     const std::string& /*clientID*/) {}

  /// The peer has closed the connection, which is still in the table. On its reader thread.
  virtual void unixSocketServerClientWithIDDidDisconnect(GDUnixSocketServer& /*server*/,
                                                         const std::string& /*clientID*/) {}

  /// The bytes of one read, 1 to 256. On the connection's reader thread, which reads no more
  /// meanwhile.
  virtual void unixSocketServerDidReceiveData(GDUnixSocketServer& /*server*/, const Data& /*data*/,
                                              const std::string& /*clientID*/) {}

  /// A read failed (GDUnixSocketErrorReadFailed). The connection is still in the table and is
  /// closed next. On its reader thread.
  virtual void unixSocketServerDidFailToReadForClientID(GDUnixSocketServer& /*server*/,
                                                        const std::string& /*clientID*/,
                                                        const Error& /*error*/) {}

  /// accept failed (GDUnixSocketErrorAcceptFailed); the server closes itself next, unless it
  /// is listening again by then. On the accept thread, with the server's closeLock held: do not
  /// close the server here.
  virtual void unixSocketServerDidFailToAcceptConnection(GDUnixSocketServer& /*server*/,
                                                         const Error& /*error*/) {}
};

/// A programming error of the caller; the only exception that the library throws.
class InternalInconsistencyException : public std::logic_error {
 public:
  using std::logic_error::logic_error;
};

/// fd() is the listening socket. Each accepted connection is a GDUnixSocket in the table, under its
/// uniqueID.
///
/// listen and close may be called from any thread, even concurrently: each call is atomic. The
/// callbacks of two such calls on different threads may come in either order.
///
/// The accept loop and the readers run on background threads, where all signals are blocked. They
/// keep the server alive: a listening server lives until it is closed, even without a reference.
/// For failures, threads and ownership see GDUnixSocket.
class GDUnixSocketServer final : public GDUnixSocket {
 public:
  /// Connections by their uniqueID.
  using ConnectedClients = std::unordered_map<std::string, std::shared_ptr<GDUnixSocket>>;

  /// A server for `socketPath` that does not listen yet; null if the path is rejected. The fragment
  /// size applies to the server itself: connections always read 256 bytes at a time.
  static std::shared_ptr<GDUnixSocketServer> initWithSocketPath(
      const std::string& socketPath, std::uint64_t andFragmentSize = kDefaultFragmentSize,
      const Queue& queue = platform::sharedBackgroundQueue());
  /// Always null: a server needs a path.
  static std::shared_ptr<GDUnixSocketServer> init() { return initWithSocketPath({}); }

  /// For initWithSocketPath() only.
  using GDUnixSocket::GDUnixSocket;

  /// Closes the server if it still has a listening socket.
  ~GDUnixSocketServer() override;
  GDUnixSocketServer(const GDUnixSocketServer&) = delete;
  GDUnixSocketServer& operator=(const GDUnixSocketServer&) = delete;

  /// The delegate, which is not owned; null if there is none or it is gone.
  [[nodiscard]] std::shared_ptr<GDUnixSocketServerDelegate> delegate() const;
  /// Takes effect with the next callback. The caller keeps the delegate alive.
  void setDelegate(std::weak_ptr<GDUnixSocketServerDelegate> delegate);

  /// Held by every close from the removal of the socket file to the end of the callback, and while
  /// a failed accept is examined and reported.
  [[nodiscard]] Mutex& closeLock() SELDIAL_RETURN_CAPABILITY(closeLock_) { return closeLock_; }

  /// A copy of the table. It keeps the connections alive, but not open.
  [[nodiscard]] ConnectedClients connectedClients() const;

  /// Calls listenWithMaxConnections() with 0.
  bool listenWithError(std::optional<Error>* error = nullptr);

  /// Creates the socket and its file and starts to accept. `maxConnections` is the backlog, the
  /// number of connections that can wait to be accepted; 0 means 5. A socket file at the path is
  /// removed first; any other file makes the call fail. A server can listen again after a close; if
  /// it is listening, the new socket replaces the old one, and the connections are closed.
  /// Errors: GDUnixSocketErrorBadSocket; GDUnixSocketErrorBindFailed and
  /// GDUnixSocketErrorListenFailed, which leave the server closed, without a callback.
  bool listenWithMaxConnections(std::int32_t maxConnections, std::optional<Error>* error = nullptr);

  /// Writes once to a connection: returns the number of bytes written, or -1 with an error of
  /// writeData() or GDUnixSocketErrorUnknownClient. The table is locked meanwhile: a slow write
  /// delays other sends, new connections and a close.
  std::int64_t sendData(const Data& data, const std::string& toClientWithID,
                        std::optional<Error>* error = nullptr);

  /// Calls sendData() on a background thread and then `completion`, unless that is empty.
  void sendData(const Data& data, const std::string& toClientWithID, WriteCompletion completion);

  /// Always 0 and no error: a listening socket is never written to. Use sendData().
  std::int64_t writeData(const Data& data, std::optional<Error>* error = nullptr) override;
  using GDUnixSocket::writeData;

  /// Closes all connections, removes the socket file, stops accepting and informs the delegate,
  /// even if the server was closed already. If the file at the path is not the one that listen
  /// created, it is not removed; see pathWasTakenOver(). Errors: GDUnixSocketErrorCloseFailed;
  /// GDUnixSocketErrorUnlinkFailed, after which the server still listens. Must not be called from
  /// the callbacks that hold closeLock.
  bool closeWithError(std::optional<Error>* error = nullptr) override;

  /// Whether the last close found that another file had replaced the server's socket file, for
  /// example because a second server listens at the same path. False again after the next listen.
  [[nodiscard]] bool pathWasTakenOver() const { return pathWasTakenOver_; }

  /// Like closeWithError(), but does not inform the delegate.
  bool closeSilently();

  /// Closes; calls didClose if `informDelegate`.
  bool closeWithError(std::optional<Error>* error, bool informDelegate);

  /// Adds a connection to the table. Throws InternalInconsistencyException if it is null.
  void addClient(const std::shared_ptr<GDUnixSocket>& client);

  /// Whether the table has an entry under the connection's uniqueID.
  [[nodiscard]] bool clientExists(const std::shared_ptr<GDUnixSocket>& client) const;

  /// Takes a connection out of the table and closes it. Returns the error of the close; none if the
  /// connection was not in the table.
  std::optional<Error> removeAndCloseClient(const std::shared_ptr<GDUnixSocket>& client);

  /// Closes all connections and empties the table. Their readers end without a callback.
  void removeAllClients();

  /// Removes the file at the path if it is a socket. Error: GDUnixSocketErrorUnlinkFailed.
  std::optional<Error> unlinkSocket();
  /// Like unlinkSocket(), at any path, which need not be standardised.
  std::optional<Error> unlinkSocket(const char* path);

  /// Reads from a connection, with callbacks, until it leaves the table. Blocks the calling thread.
  void readOnConnection(const std::shared_ptr<GDUnixSocket>& connection);

  /// Accepts connections until the server is closed. Blocks the calling thread; listen runs it in
  /// the background.
  void mainLoop();

 private:
  struct Client {
    std::shared_ptr<GDUnixSocket> socket;
    bool hasReader = false;  ///< a background task reads from it until it leaves the table
  };

  /// Identifies a file among those that exist at the same time. All zero if the file could not be
  /// examined after bind; it is then assumed to be ours.
  struct FileIdentity {
    dev_t device = 0;
    ino_t inode = 0;
    bool operator==(const FileIdentity&) const = default;
  };

  std::shared_ptr<GDUnixSocketServer> self();

  std::optional<Error> startListening(std::int32_t backlog) SELDIAL_EXCLUDES(listeningLock_);
  std::optional<Error> openListening(std::int32_t backlog) SELDIAL_REQUIRES(listeningLock_);
  bool bindTo(const std::string& path);
  bool listenOn(std::int32_t backlog);

  /// Removes the socket file and, if that succeeds, closes the socket and all connections.
  std::optional<Error> closeListening() SELDIAL_REQUIRES(listeningLock_);
  std::optional<Error> unlinkSocketFile() SELDIAL_REQUIRES(listeningLock_);
  static std::optional<FileIdentity> fileAt(const std::string& path);
  /// Closes and informs the delegate, unless that listening socket has already been closed.
  void closeGeneration(Descriptor::Generation listening)
      SELDIAL_EXCLUDES(closeLock_, listeningLock_);
  void notifyClosed(const std::optional<Error>& error);

  void startMainLoop(Descriptor::Generation listening);
  void acceptConnections(Descriptor::Generation listening);
  int acceptOn(Descriptor::Generation listening);
  void acceptFailed(Descriptor::Generation listening, int errorNumber);
  void finishDisconnected() SELDIAL_EXCLUDES(lock_);
  void startReader(int accepted, Descriptor::Generation listening);
  bool addAccepted(const std::shared_ptr<GDUnixSocket>& connection,
                   Descriptor::Generation listening) SELDIAL_EXCLUDES(lock_);
  void connectionEnded(const std::shared_ptr<GDUnixSocket>& connection,
                       const std::optional<Error>& error);

  mutable Mutex delegateLock_;  ///< not lock_: a callback must not wait for a slow send
  std::weak_ptr<GDUnixSocketServerDelegate> delegate_ SELDIAL_GUARDED_BY(delegateLock_);

  // Locks are taken in this order: closeLock_, listeningLock_, lock_.
  Mutex closeLock_;
  /// Held by listen and close while they change the socket and its file, which makes each of them
  /// atomic; never during a callback.
  Mutex listeningLock_;
  /// The file that bind created; empty before that and after its removal.
  std::optional<FileIdentity> socketFile_ SELDIAL_GUARDED_BY(listeningLock_);
  std::atomic<bool> pathWasTakenOver_{false};
  std::unordered_map<std::string, Client> clients_ SELDIAL_GUARDED_BY(lock_);
  Condition clientRemoved_;  ///< from clients_
};

}  // namespace seldial
