// A private session bus, and a service on it.
#pragma once

#include <systemd/sd-bus.h>

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "platform/linux/MainLoop.h"
#include "tests/support/ChildProcess.h"

namespace seldial::tests {

/// Runs the loop, which sleeps between events, until `condition` holds. Throws std::runtime_error
/// when nothing happens for kTimeLimit.
void serveUntil(platform::linux_port::MainLoop& loop, const std::function<bool()>& condition);

/// The private session bus. Throws std::runtime_error if dbus-daemon is not installed; the text
/// says what to install.
class SessionBus {
 public:
  SessionBus();

  [[nodiscard]] const std::string& address() const { return address_; }
  /// Makes it the session bus of the test's own process.
  void enter() const;
  /// Kills the bus, which closes every connection at once. Returns once it is gone.
  void kill();

 private:
  ChildProcess daemon_;
  const std::string address_;
};

/// A program on the bus, with its own thread.
class BusService {
 public:
  /// Replies to a call. The result is that of an sd-bus filter: 0 passes the call on.
  using Answer = std::function<int(sd_bus_message* call)>;

  /// After construction it owns the name. `answer` is called on the thread.
  BusService(const SessionBus& bus, const std::string& name, Answer answer);
  ~BusService();
  BusService(const BusService&) = delete;
  BusService& operator=(const BusService&) = delete;

  /// Sends a signal; the arguments are those of sd_bus_message_append().
  template <class... Arguments>
  void emit(const char* path, const char* interface, const char* signal, const char* types,
            Arguments... arguments) {
    use([=](sd_bus* bus) {
      sd_bus_emit_signal(bus, path, interface, signal, types, arguments...);
    });
  }

  /// Runs `task` on the connection and sends its messages. No call is answered meanwhile.
  template <class Task>
  void use(Task task) {
    const std::lock_guard lock(mutex_);
    task(bus_);
    sd_bus_flush(bus_);
  }

 private:
  void run();

  const Answer answer_;
  sd_bus* bus_ = nullptr;
  std::mutex mutex_;  ///< guards bus_
  int stop_;          ///< an eventfd
  std::thread thread_;
};

}  // namespace seldial::tests
