#include "platform/wayland/Bus.h"

#include <poll.h>
#include <sys/epoll.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>

#include "platform/System.h"

namespace seldial::platform::wayland {
namespace {

using std::chrono::microseconds;
using Clock = std::chrono::steady_clock;

constexpr std::uint64_t kNever = UINT64_MAX;

const BusObject kDaemon{"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus"};

int handleSignal(sd_bus_message* signal, void* handler, sd_bus_error* /*error*/) {
  (*static_cast<Bus::SignalHandler*>(handler))(signal);
  return 0;
}

/// Converts a steady_clock time, in microseconds, for a timer.
itimerspec timerAt(std::uint64_t time) {
  itimerspec setting{};
  if (time == kNever) return setting;
  setting.it_value.tv_sec = static_cast<time_t>(time / 1'000'000);
  // A value of zero would disarm the timer.
  setting.it_value.tv_nsec = static_cast<long>(time % 1'000'000) * 1000 + 1;
  return setting;
}

}  // namespace

bool visitDictionary(sd_bus_message* message,
                     const std::function<bool(const std::string&)>& visit) {
  if (sd_bus_message_enter_container(message, SD_BUS_TYPE_ARRAY, "{sv}") <= 0) return false;
  while (sd_bus_message_enter_container(message, SD_BUS_TYPE_DICT_ENTRY, "sv") > 0) {
    const char* key = nullptr;
    if (sd_bus_message_read(message, "s", &key) <= 0) return false;
    if (!visit(key) && sd_bus_message_skip(message, "v") <= 0) return false;
    if (sd_bus_message_exit_container(message) < 0) return false;
  }
  return sd_bus_message_exit_container(message) >= 0;
}

std::unique_ptr<Bus> Bus::open(linux_port::MainLoop& loop, std::function<void()> connectionLost) {
  sd_bus* connection = nullptr;
  if (sd_bus_open_user(&connection) < 0) return nullptr;
  std::unique_ptr<Bus> bus(new Bus(connection, loop, std::move(connectionLost)));
  // Connected means that the bus has accepted us.
  const bool ready = bus->waitFor([&] { return sd_bus_is_ready(connection) > 0; }, kTimeout);
  return ready ? std::move(bus) : nullptr;
}

Bus::Bus(sd_bus* bus, linux_port::MainLoop& loop, std::function<void()> connectionLost)
    : loop_(loop),
      connectionLost_(std::move(connectionLost)),
      bus_(bus),
      epoll_(epoll_create1(EPOLL_CLOEXEC)),
      timer_(timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK)) {
  sd_bus_set_method_call_timeout(bus_, microseconds(kTimeout).count());
  epoll_event timer{};
  timer.events = EPOLLIN;
  epoll_ctl(epoll_, EPOLL_CTL_ADD, timer_, &timer);
  epoll_event connection{};
  epoll_ctl(epoll_, EPOLL_CTL_ADD, sd_bus_get_fd(bus_), &connection);
  loop_.watch(*this);
}

Bus::~Bus() {
  if (watched_) loop_.unwatch(*this);
  sd_bus_close_unref(bus_);
  close(timer_);
  close(epoll_);
}

bool Bus::waitFor(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
  const auto deadline = Clock::now() + limit;
  for (;;) {
    process();
    if (lost_ || condition()) return !lost_;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    if (left.count() <= 0 || loop_.interrupted()) return false;
    pollfd waiting[]{{epoll_, POLLIN, 0}, {loop_.interruption(), POLLIN, 0}};
    if (poll(waiting, 2, static_cast<int>(left.count())) == -1 && errno != EINTR) return false;
  }
}

std::string Bus::uniqueName() const {
  const char* name = nullptr;
  return sd_bus_get_unique_name(bus_, &name) >= 0 ? name : "";
}

bool Bus::hasOwner(const std::string& name) {
  const auto reply = call(kDaemon, "NameHasOwner", "s", name.c_str());
  int owned = 0;
  return reply && sd_bus_message_read(reply.get(), "b", &owned) > 0 && owned != 0;
}

BusMessage Bus::newCall(const BusObject& object, const char* method) {
  sd_bus_message* message = nullptr;
  const int result =
      sd_bus_message_new_method_call(bus_, &message, object.service.c_str(), object.path.c_str(),
                                     object.interface.c_str(), method);
  if (result < 0) error_ = errorText(-result);
  return BusMessage(message);
}

BusMessage Bus::call(BusMessage message) {
  if (!message) return nullptr;
  sd_bus_error error{};
  sd_bus_message* reply = nullptr;
  const int result = sd_bus_call(bus_, message.get(), 0, &error, &reply);
  if (result < 0) error_ = error.message != nullptr ? error.message : errorText(-result);
  sd_bus_error_free(&error);
  return BusMessage(reply);
}

BusSlot Bus::onSignal(const BusObject& object, const char* signal, SignalHandler handler) {
  return addMatch("type='signal',sender='" + object.service + "',path='" + object.path +
                      "',interface='" + object.interface + "',member='" + signal + "'",
                  std::move(handler));
}

BusSlot Bus::onOwnerChange(const std::string& name, std::function<void(bool owned)> handler) {
  return addMatch(
      "type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
      "member='NameOwnerChanged',arg0='" +
          name + "'",
      [handler = std::move(handler)](sd_bus_message* signal) {
        const char* owner = "";
        if (sd_bus_message_read(signal, "sss", nullptr, nullptr, &owner) > 0) handler(*owner != 0);
      });
}

BusSlot Bus::addMatch(const std::string& rule, SignalHandler handler) {
  auto owned = std::make_unique<SignalHandler>(std::move(handler));
  sd_bus_slot* slot = nullptr;
  const int result = sd_bus_add_match(bus_, &slot, rule.c_str(), handleSignal, owned.get());
  if (result < 0) {
    error_ = errorText(-result);
    return nullptr;
  }
  // sd-bus keeps the slot while it calls the handler.
  sd_bus_slot_set_destroy_callback(slot,
                                   [](void* data) { delete static_cast<SignalHandler*>(data); });
  [[maybe_unused]] const auto* const ownedBySlot = owned.release();
  return BusSlot(slot);
}

void Bus::readable() {
  process();
  if (!lost_ || !std::exchange(watched_, false)) return;
  loop_.unwatch(*this);
  connectionLost_();
}

// A call may have read signals while it was waiting for its reply.
void Bus::willWait() {
  process();
}

bool Bus::readableWhileBlocked() {
  process();
  return !lost_;
}

void Bus::process() {
  if (lost_) return;
  int result = 0;
  do {
    result = sd_bus_process(bus_, nullptr);
  } while (result > 0);
  lost_ = result < 0;
  prepareWait();
}

/// Makes epoll_ readable when sd-bus has something to do. After the connection is lost it stays
/// readable, and readable() reports the loss.
void Bus::prepareWait() {
  std::uint64_t time = kNever;
  sd_bus_get_timeout(bus_, &time);
  if (lost_) time = 0;
  const auto setting = timerAt(time);
  timerfd_settime(timer_, TFD_TIMER_ABSTIME, &setting, nullptr);
  const int wanted = lost_ ? 0 : sd_bus_get_events(bus_);
  epoll_event connection{};
  if ((wanted & POLLIN) != 0) connection.events |= EPOLLIN;
  if ((wanted & POLLOUT) != 0) connection.events |= EPOLLOUT;
  if (wanted < 0 || connection.events == events_) return;
  events_ = connection.events;
  epoll_ctl(epoll_, EPOLL_CTL_MOD, sd_bus_get_fd(bus_), &connection);
}

}  // namespace seldial::platform::wayland
