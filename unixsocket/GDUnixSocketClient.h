// A client: connects to a server's path, writes, and reads on demand or in the background.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "unixsocket/GDUnixSocket.h"

namespace seldial {

class GDUnixSocketClient;

/// What a client tells. Implement what you want to hear; each method does nothing by default. On
/// the thread that reads: of the read loop, a background thread. No lock is held. References are
/// valid during the callback; a callback must not throw.
class GDUnixSocketClientDelegate {
 public:
  GDUnixSocketClientDelegate() = default;
  virtual ~GDUnixSocketClientDelegate() = default;
  GDUnixSocketClientDelegate(const GDUnixSocketClientDelegate&) = delete;
  GDUnixSocketClientDelegate& operator=(const GDUnixSocketClientDelegate&) = delete;

  /// After every read that gave data, 1 to fragmentSize() bytes.
  virtual void unixSocketClientDidReceiveData(GDUnixSocketClient& /*client*/,
                                              const Data& /*data*/) {}

  /// After every read that failed (GDUnixSocketErrorReadFailed). The end of the stream is no
  /// failure and has no callback.
  virtual void unixSocketClientDidFailToReadWithError(GDUnixSocketClient& /*client*/,
                                                      const Error& /*error*/) {}
};

/// Connects and writes on the caller's thread. May be connected again after a close. Failures,
/// threads and ownership are as GDUnixSocket says.
class GDUnixSocketClient final : public GDUnixSocket {
 public:
  /// Would be called with the error or none.
  using ConnectCompletion = std::function<void(const std::optional<Error>& error)>;

  /// A client for `socketPath`, not connected; null when the path is rejected.
  static std::shared_ptr<GDUnixSocketClient> initWithSocketPath(
      const std::string& socketPath, std::uint64_t andFragmentSize = kDefaultFragmentSize);
  /// Always null: there is no client without a path.
  static std::shared_ptr<GDUnixSocketClient> init() { return initWithSocketPath({}); }

  /// For initWithSocketPath() alone.
  GDUnixSocketClient(Key key, const std::string& socketPath, std::uint64_t fragmentSize);

  /// Who is told; not owned, null when there is none or it is gone.
  [[nodiscard]] std::shared_ptr<GDUnixSocketClientDelegate> delegate() const;
  /// From the next callback on. The caller keeps the delegate alive; null is none.
  void setDelegate(std::weak_ptr<GDUnixSocketClientDelegate> delegate);

  /// The longest that a connect, or a write, of the connections made from now on waits for a server
  /// that does not accept, or does not read. 0 (so from the start) is without end. A connect that
  /// waited in vain fails; a write gives a short count, or fails when nothing was taken.
  void setSendTimeout(std::chrono::milliseconds timeout) { sendTimeout_ = timeout; }

  /// Makes a socket and connects it; with `autoRead`, starts readLoop(). Waits while the server's
  /// backlog is full. Errors: GDUnixSocketErrorBadSocket; GDUnixSocketErrorConnectFailed and
  /// GDUnixSocketErrorListenFailed (the path does not fit into an address), with the client closed.
  bool connectWithAutoRead(bool autoRead, std::optional<Error>* error = nullptr);

  /// Does nothing, and never calls back; kept on purpose. Use the one above.
  void connectWithAutoRead(bool autoRead, const ConnectCompletion& completion);

  /// As the base class, and tells the delegate.
  std::optional<Data> readWithError(std::optional<Error>* error = nullptr) override;

  /// Reads from the present connection on a background thread, which tells the delegate, until it
  /// ends or a read fails; then closes the client. Keeps the client alive meanwhile.
  void readLoop();

 private:
  std::optional<Error> openConnection();
  bool connectTo(const std::string& path);
  std::optional<Data> readAndTell(Descriptor::Serial connection, std::optional<Error>* error);

  mutable Mutex delegateLock_;
  std::weak_ptr<GDUnixSocketClientDelegate> delegate_ SELDIAL_GUARDED_BY(delegateLock_);
  std::atomic<std::chrono::milliseconds> sendTimeout_{std::chrono::milliseconds::zero()};
};

}  // namespace seldial
