// The control socket of a running client, and the results that it reports.
#pragma once

#include <cstddef>
#include <ctime>
#include <deque>
#include <functional>
#include <memory>
#include <string>

#include "ucclient/MainThread.h"

namespace seldial {

/// The last results of the hot key, in memory only. One thread.
class History {
 public:
  /// `outcome` is a sentence without a full stop, shown only to the user: it may contain the
  /// number.
  void add(const std::string& outcome);

  /// One line per result with its time, oldest first; empty if there are none.
  [[nodiscard]] std::string text() const;

 private:
  static constexpr std::size_t kMaxOutcomes = 20;

  std::deque<std::string> lines_;
};

/// The date and time in the local time zone, "2026-11-22 14:03:11".
[[nodiscard]] std::string timeText(std::time_t time);

/// The socket on which the client answers the requests of askRunningClient(). Only the user can
/// connect. Create, use and destroy it on the main thread.
class ControlSocket {
 public:
  /// Sends the answer and closes the connection. Call it once, on the main thread. False if the
  /// client has disconnected.
  using Reply = std::function<bool(const std::string& answer)>;

  /// Handles a request on the main thread; it may reply later.
  using Handler = std::function<void(const std::string& request, const Reply& reply)>;

  /// Null if listening at `path` fails, or if another seldial-uc already listens there; that one
  /// then answers all requests.
  static std::unique_ptr<ControlSocket> listenAt(const std::string& path,
                                                 std::shared_ptr<MainThread> mainThread,
                                                 Handler handler);

  ~ControlSocket();
  ControlSocket(const ControlSocket&) = delete;
  ControlSocket& operator=(const ControlSocket&) = delete;

 private:
  class Receiver;

  explicit ControlSocket(std::shared_ptr<Receiver> receiver);

  const std::shared_ptr<Receiver> receiver_;
};

}  // namespace seldial
