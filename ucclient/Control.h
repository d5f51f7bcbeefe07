// What a running client tells about itself, and to whom.
#pragma once

#include <cstddef>
#include <ctime>
#include <deque>
#include <functional>
#include <memory>
#include <string>

#include "ucclient/MainThread.h"

namespace seldial {

/// The last outcomes of the hot key, in memory only. One thread.
class History {
 public:
  /// `outcome` is a sentence without a full stop, for the user's own eyes: it may have the number.
  void add(const std::string& outcome);

  /// One line for each outcome with its time, the oldest first; empty when there are none.
  [[nodiscard]] std::string text() const;

 private:
  static constexpr std::size_t kMostOutcomes = 20;

  std::deque<std::string> lines_;
};

/// A date and time of day in the local time zone, "2026-11-22 14:03:11".
[[nodiscard]] std::string timeText(std::time_t time);

/// The socket on which the client answers the requests of askRunningClient(). Only the user can
/// connect. Made, used and destroyed on the main thread.
class ControlSocket {
 public:
  /// Sends the answer and closes the connection. To be called once, on the main thread. False when
  /// the asker is gone.
  using Reply = std::function<bool(const std::string& answer)>;

  /// Handles a request, on the main thread; it may reply later.
  using Handler = std::function<void(const std::string& request, const Reply& reply)>;

  /// Null when nothing can listen at `path`, or another client does already: that one is asked
  /// then, and this one is not.
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
