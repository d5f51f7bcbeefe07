// The client: connects to a server's path, writes, and reads on demand or in the background.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "unixsocket/GDUnixSocket.h"

namespace seldial {

class GDUnixSocketClient;

/// Receives the callbacks of a client. Override those of interest; each does nothing by default.
/// They come on the thread that reads: for the read loop, a background thread. No lock is held.
/// References are valid during the callback. A callback must not throw.
class GDUnixSocketClientDelegate {
 public:
  GDUnixSocketClientDelegate() = default;
  virtual ~GDUnixSocketClientDelegate() = default;
  GDUnixSocketClientDelegate(const GDUnixSocketClientDelegate&) = delete;
  GDUnixSocketClientDelegate& operator=(const GDUnixSocketClientDelegate&) = delete;

  /// After every read that returned data, 1 to fragmentSize() bytes.
  virtual void unixSocketClientDidReceiveData(GDUnixSocketClient& /*client*/,
                                              const Data& /*data*/) {}

  /// After every read that failed (GDUnixSocketErrorReadFailed). End of stream is not a failure and
  /// has no callback.
  virtual void unixSocketClientDidFailToReadWithError(GDUnixSocketClient& /*client*/,
                                                      const Error& /*error*/) {}
};

/// Connects and writes on the caller's thread. Can be connected again after a close. For failures,
/// threads and ownership see GDUnixSocket.
class GDUnixSocketClient final : public GDUnixSocket {
 public:
  /// Called with the error or none.
  using ConnectCompletion = std::function<void(const std::optional<Error>& error)>;
  /// Calls `sink` with the pieces of some data, in order, until it returns false.
  using DataPieces = std::function<void(const std::function<bool(std::string_view)>& sink)>;

  /// A client for `socketPath`, not connected; null if the path is rejected.
  static std::shared_ptr<GDUnixSocketClient> initWithSocketPath(
      const std::string& socketPath, std::uint64_t andFragmentSize = kDefaultFragmentSize,
      const Queue& queue = platform::sharedBackgroundQueue());
  /// Always null: a client needs a path.
  static std::shared_ptr<GDUnixSocketClient> init() { return initWithSocketPath({}); }

  /// For initWithSocketPath() only.
  using GDUnixSocket::GDUnixSocket;

  /// The delegate, which is not owned; null if there is none or it is gone.
  [[nodiscard]] std::shared_ptr<GDUnixSocketClientDelegate> delegate() const;
  /// Takes effect with the next callback. The caller keeps the delegate alive.
  void setDelegate(std::weak_ptr<GDUnixSocketClientDelegate> delegate);

  /// Sets one deadline for each future connection, `timeout` after the start of its connect: from
  /// then on neither the connect nor a write waits, however slowly the server reads. 0, the
  /// default, means no deadline. At the deadline a connect fails with EAGAIN; a write returns the
  /// number of bytes written so far, or fails with EAGAIN if there are none.
  void setSendTimeout(std::chrono::milliseconds timeout) { sendTimeout_ = timeout; }

  /// Creates a socket and connects it; with `autoRead`, starts readLoop(). Blocks while the
  /// server's backlog is full; a close on another thread ends the wait within 50 ms (ECANCELED).
  /// Errors: GDUnixSocketErrorBadSocket; GDUnixSocketErrorConnectFailed and
  /// GDUnixSocketErrorListenFailed (the path does not fit into an address), which leave the client
  /// closed.
  bool connectWithAutoRead(bool autoRead, std::optional<Error>* error = nullptr);

  /// Does nothing and never calls back; kept on purpose. Use the overload above.
  void connectWithAutoRead(bool autoRead, const ConnectCompletion& completion);

  /// Like the base class; with a send timeout, it writes as much as the server reads before the
  /// deadline.
  std::int64_t writeData(const Data& data, std::optional<Error>* error = nullptr) override;
  using GDUnixSocket::writeData;

  /// Writes data that is too large to be held in memory. Makes a system call for each piece;
  /// otherwise like the function above with all pieces at once.
  std::int64_t writeData(const DataPieces& pieces, std::optional<Error>* error = nullptr);

  /// Like the base class, and calls the delegate.
  std::optional<Data> readWithError(std::optional<Error>* error = nullptr) override;

  /// Reads from the current connection on a background thread, with callbacks, until end of stream
  /// or a failure; then closes the client. Keeps the client alive meanwhile.
  void readLoop();

 private:
  using Clock = std::chrono::steady_clock;

  std::optional<Error> openConnection();
  bool connectTo(const std::string& path);
  std::optional<Data> readAndNotify(Descriptor::Generation connection, std::optional<Error>* error);

  mutable Mutex delegateLock_;
  std::weak_ptr<GDUnixSocketClientDelegate> delegate_ SELDIAL_GUARDED_BY(delegateLock_);
  std::atomic<std::chrono::milliseconds> sendTimeout_{std::chrono::milliseconds::zero()};
  std::atomic<Clock::time_point> deadline_{Clock::time_point::max()};  ///< of the last connection
};

}  // namespace seldial
