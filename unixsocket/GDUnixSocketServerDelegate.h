#pragma once

#include <optional>
#include <string>

#include "unixsocket/Data.h"
#include "unixsocket/Error.h"

namespace seldial {

class GDUnixSocketServer;

/// What a server tells. Implement what you want to hear; each method does nothing by default.
///
/// Callbacks come on the thread named at each, concurrently for different connections. Those of one
/// connection come in order: its accept, then its data, then its disconnect or read failure, each
/// after the one before has returned. The server holds no lock during a callback except where it is
/// said. References are valid during the callback; a callback must not throw.
class GDUnixSocketServerDelegate {
 public:
  GDUnixSocketServerDelegate() = default;
  virtual ~GDUnixSocketServerDelegate() = default;
  GDUnixSocketServerDelegate(const GDUnixSocketServerDelegate&) = delete;
  GDUnixSocketServerDelegate& operator=(const GDUnixSocketServerDelegate&) = delete;

  /// Once per successful listen, in its thread.
  virtual void unixSocketServerDidStartListening(GDUnixSocketServer& /*server*/) {}

  /// At the end of every close that informs, in its thread, also of a repeated one. The server's
  /// closeLock is held: do not close the server here, nor make it listen. It may also come while
  /// the last reference to the server is being dropped, so do not take a new one.
  virtual void unixSocketServerDidClose(GDUnixSocketServer& /*server*/,
                                        const std::optional<Error>& /*error*/) {}

  /// A connection is in the table and can be sent to. On the accept thread: no other connection is
  /// accepted meanwhile, and nothing is read from this one.
  virtual void unixSocketServerDidAcceptClientWithID(GDUnixSocketServer& /*server*/,
                                                     const std::string& /*clientID*/) {}

  /// A connection has left; it is still in the table. On its reader thread.
  virtual void unixSocketServerClientWithIDDidDisconnect(GDUnixSocketServer& /*server*/,
                                                         const std::string& /*clientID*/) {}

  /// One read's worth of bytes, 1 to 256. On the connection's reader thread, where nothing more is
  /// read meanwhile.
  virtual void unixSocketServerDidReceiveData(GDUnixSocketServer& /*server*/, const Data& /*data*/,
                                              const std::string& /*clientID*/) {}

  /// A read failed (GDUnixSocketErrorReadFailed); the connection is still in the table and is
  /// closed afterwards. On its reader thread.
  virtual void unixSocketServerDidFailToReadForClientID(GDUnixSocketServer& /*server*/,
                                                        const std::string& /*clientID*/,
                                                        const Error& /*error*/) {}

  /// An accept failed (GDUnixSocketErrorAcceptFailed); the server closes itself afterwards. On the
  /// accept thread, with the server's closeLock held: do not close the server here.
  virtual void unixSocketServerDidFailToAcceptConnection(GDUnixSocketServer& /*server*/,
                                                         const Error& /*error*/) {}
};

}  // namespace seldial
