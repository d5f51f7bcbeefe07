// The session bus, through sd-bus: calls that wait for their reply, and signals as they arrive.
#pragma once

#include <systemd/sd-bus.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "platform/linux/MainLoop.h"

namespace seldial::platform::wayland {

struct UnrefBusMessage {
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using BusMessage = std::unique_ptr<sd_bus_message, UnrefBusMessage>;

struct UnrefBusSlot {
  void operator()(sd_bus_slot* slot) const { sd_bus_slot_unref(slot); }
};
/// A signal subscription. Destroying it ends the subscription. Must not outlive its Bus.
using BusSlot = std::unique_ptr<sd_bus_slot, UnrefBusSlot>;

/// The service, path and interface of methods and signals.
struct BusObject {
  std::string service;
  std::string path;
  std::string interface;
};

/// Calls `visit` with each key of the next value in the message, a dictionary from strings to
/// variants. `visit` returns true if it has read the variant. False if the message is malformed.
bool visitDictionary(sd_bus_message* message, const std::function<bool(const std::string&)>& visit);

/// One connection. Main thread only. Once it is lost, calls fail at once.
class Bus final : public linux_port::EventSource {
 public:
  /// How long the bus, or a service, may take to answer before a call counts as failed.
  static constexpr std::chrono::seconds kTimeout{5};

  using SignalHandler = std::function<void(sd_bus_message* signal)>;

  /// Connects to the bus of the user's session. The loop watches the connection for as long as this
  /// object lives, or until the connection is lost; then `connectionLost` is called, once, from the
  /// loop. Null if no bus answers in time.
  static std::unique_ptr<Bus> open(linux_port::MainLoop& loop,
                                   std::function<void()> connectionLost);
  ~Bus() override;
  Bus(const Bus&) = delete;
  Bus& operator=(const Bus&) = delete;

  /// Whether a program on the bus owns this name. Does not start one.
  [[nodiscard]] bool hasOwner(const std::string& name);

  /// Calls a method and waits for its reply. `types` and the arguments are those of
  /// sd_bus_message_append(). Null if the call fails; error() says why.
  template <class... Arguments>
  BusMessage call(const BusObject& object, const char* method, const char* types,
                  Arguments... arguments) {
    auto message = newCall(object, method);
    if (message && sd_bus_message_append(message.get(), types, arguments...) < 0) message.reset();
    return call(std::move(message));
  }

  /// A method call without arguments, to be filled and passed to call(). Null if memory is
  /// exhausted or a name is malformed.
  [[nodiscard]] BusMessage newCall(const BusObject& object, const char* method);
  BusMessage call(BusMessage message);

  /// Why the last call failed, as readable text.
  [[nodiscard]] const std::string& error() const { return error_; }

  /// Calls `handler` for each signal with this name. It is called from the loop, even while the
  /// loop blocks, so it must post events for the application. It may call methods and destroy the
  /// slot. Null if the bus refuses.
  [[nodiscard]] BusSlot onSignal(const BusObject& object, const char* signal,
                                 SignalHandler handler);

  /// Serves the bus until `condition` holds. False if it does not hold within `limit`, the
  /// connection is lost, or the program is to end.
  bool waitFor(const std::function<bool()>& condition, std::chrono::milliseconds limit);

  /// Calls `handler` when a program takes this name or gives it up, like onSignal().
  [[nodiscard]] BusSlot onOwnerChange(const std::string& name,
                                      std::function<void(bool owned)> handler);

  /// The unique name of this connection, ":1.42"; empty if it is lost.
  [[nodiscard]] std::string uniqueName() const;

  [[nodiscard]] int descriptor() const override { return epoll_; }
  void readable() override;
  void willWait() override;
  bool readableWhileBlocked() override;

 private:
  Bus(sd_bus* bus, linux_port::MainLoop& loop, std::function<void()> connectionLost);
  BusSlot addMatch(const std::string& rule, SignalHandler handler);
  void process();
  void prepareWait();

  linux_port::MainLoop& loop_;
  const std::function<void()> connectionLost_;
  sd_bus* const bus_;
  const int epoll_;           ///< watches the connection and timer_, as sd-bus requires
  const int timer_;           ///< the time limits of sd-bus
  std::uint32_t events_ = 0;  ///< of the connection, as epoll_ watches them
  bool lost_ = false;
  bool watched_ = true;
  std::string error_;
};

}  // namespace seldial::platform::wayland
