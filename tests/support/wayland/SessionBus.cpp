#include "tests/support/wayland/SessionBus.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <utility>

#include "tests/support/Waiting.h"

namespace seldial::tests {
namespace {

int answerCall(sd_bus_message* message, void* answer, sd_bus_error* /*error*/) {
  if (sd_bus_message_is_method_call(message, nullptr, nullptr) <= 0) return 0;
  return (*static_cast<const BusService::Answer*>(answer))(message);
}

}  // namespace

void serveUntil(platform::linux_port::MainLoop& loop, const std::function<bool()>& condition) {
  for (loop.serve(); !condition(); loop.serve()) {
    pollfd waiting{loop.descriptor(), POLLIN, 0};
    const auto limit = std::chrono::milliseconds(kTimeLimit).count();
    if (poll(&waiting, 1, static_cast<int>(limit)) == 0)
      throw std::runtime_error("nothing happens");
  }
}

SessionBus::SessionBus()
    : daemon_({"dbus-daemon", "--session", "--nofork", "--print-address"}, {},
              "the tests need a private session bus: sudo apt-get install dbus-daemon"),
      address_(daemon_.readLine()) {}

void SessionBus::enter() const {
  setenv("DBUS_SESSION_BUS_ADDRESS", address_.c_str(), 1);
}

void SessionBus::kill() {
  daemon_.signal(SIGKILL);
  daemon_.wait();
}

BusService::BusService(const SessionBus& bus, const std::string& name, Answer answer)
    : answer_(std::move(answer)), stop_(eventfd(0, EFD_CLOEXEC)) {
  const bool named =
      sd_bus_new(&bus_) >= 0 && sd_bus_set_address(bus_, bus.address().c_str()) >= 0 &&
      sd_bus_set_bus_client(bus_, 1) >= 0 && sd_bus_start(bus_) >= 0 &&
      sd_bus_add_filter(bus_, nullptr, answerCall, const_cast<Answer*>(&answer_)) >= 0 &&
      sd_bus_request_name(bus_, name.c_str(), 0) >= 0;
  if (!named) throw std::runtime_error("no service " + name + " on the bus");
  thread_ = std::thread([this] { run(); });
}

BusService::~BusService() {
  eventfd_write(stop_, 1);
  thread_.join();
  sd_bus_close_unref(bus_);
  close(stop_);
}

void BusService::run() {
  pollfd descriptors[]{{sd_bus_get_fd(bus_), POLLIN, 0}, {stop_, POLLIN, 0}};
  while (descriptors[1].revents == 0) {
    {
      const std::lock_guard lock(mutex_);
      int result = 0;
      do {
        result = sd_bus_process(bus_, nullptr);
      } while (result > 0);
      sd_bus_flush(bus_);
      if (result < 0) return;  // the bus is gone
    }
    poll(descriptors, 2, -1);
  }
}

}  // namespace seldial::tests
