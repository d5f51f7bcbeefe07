// The IPC socket of sway, which accepts commands and reports events with the protocol of i3.
//
// A message consists of the text "i3-ipc", the size of its payload and its type, both as 32-bit
// numbers in the machine's byte order, and the payload: a command, or JSON.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/MainLoop.h"

namespace seldial::platform::wayland {

/// The types of requests. Replies have the same type.
enum class SwayRequest : std::uint32_t {
  kRunCommand = 0,
  kSubscribe = 2,
  kGetTree = 4,
  kGetVersion = 7,
  kGetConfig = 9,
  kGetBindingState = 12,
};

/// The types of events.
enum class SwayEvent : std::uint32_t {
  kWorkspace = 0x80000000,
  kMode = 0x80000002,
  kBinding = 0x80000005,
};

struct SwayMessage {
  std::uint32_t type = 0;  ///< a SwayRequest or a SwayEvent
  std::string content;
};

/// One connection. Main thread only.
class SwayConnection {
 public:
  /// Connects to the socket at `path`. Null if nobody listens there.
  static std::unique_ptr<SwayConnection> open(const std::string& path);
  ~SwayConnection();
  SwayConnection(const SwayConnection&) = delete;
  SwayConnection& operator=(const SwayConnection&) = delete;

  /// Sends a request and returns the payload of the reply. Nothing if it does not arrive within
  /// five seconds; the connection is then closed, and opened again for the next request.
  std::optional<std::string> ask(SwayRequest request, const std::string& content = {});

  /// Runs commands, separated by semicolons; true when all of them succeed.
  bool run(const std::string& commands);

  /// The next message that has arrived completely, without waiting.
  std::optional<SwayMessage> next();

  [[nodiscard]] int descriptor() const { return socket_; }
  [[nodiscard]] bool closed() const { return closed_; }

 private:
  using Clock = std::chrono::steady_clock;

  explicit SwayConnection(std::string path) : path_(std::move(path)) {}
  bool connect();
  void disconnect();
  bool send(SwayRequest request, const std::string& content);
  bool waitFor(short events, Clock::time_point deadline);
  bool readMore();

  const std::string path_;
  int socket_ = -1;
  bool closed_ = true;
  std::string received_;  ///< not yet returned by next()
};

/// A connection for events. Main thread only.
class SwayEvents final : public linux_port::EventSource {
 public:
  using Handler = std::function<void(SwayEvent, const std::string& content)>;

  /// Subscribes to the events in `names`, a JSON array. The loop watches the connection for as long
  /// as this object lives, or until it ends; then `connectionLost` is called, once.
  SwayEvents(std::unique_ptr<SwayConnection> connection, const std::string& names,
             linux_port::MainLoop& loop, Handler handler, std::function<void()> connectionLost);
  ~SwayEvents() override;
  SwayEvents(const SwayEvents&) = delete;
  SwayEvents& operator=(const SwayEvents&) = delete;

  /// Handles events until `condition` holds. False at the deadline, at the end of the connection,
  /// and when the loop is interrupted.
  bool waitFor(const std::function<bool()>& condition,
               std::chrono::steady_clock::time_point deadline);

  [[nodiscard]] int descriptor() const override { return connection_->descriptor(); }
  void readable() override;
  void willWait() override { handleArrived(); }

 private:
  void handleArrived();

  const std::unique_ptr<SwayConnection> connection_;
  linux_port::MainLoop& loop_;
  const Handler handler_;
  const std::function<void()> connectionLost_;
  bool watched_ = true;
};

/// The application ID, or the window class and instance on Xwayland, of the focused window in a
/// reply to SwayRequest::kGetTree. Empty if no window has the focus.
[[nodiscard]] std::vector<std::string> focusedProgram(const std::string& tree);

}  // namespace seldial::platform::wayland
