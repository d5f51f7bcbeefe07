#include <systemd/sd-bus.h>

#include <memory>
#include <optional>
#include <string_view>
#include <thread>
#include <utility>

#include "ucclient/Notifications.h"

namespace seldial {
namespace {

/// How long the desktop may take to answer, in microseconds.
constexpr std::uint64_t kTimeLimit = 5'000'000;
constexpr const char* kName = "org.freedesktop.Notifications";
constexpr std::int32_t kDefaultDuration = -1;
constexpr std::uint32_t kNoneToReplace = 0;

/// Desktops may read the body as markup.
std::string escaped(const std::string& text) {
  std::string result;
  for (const char letter : text) {
    switch (letter) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      default:
        result += letter;
    }
  }
  return result;
}

struct CloseBus {
  void operator()(sd_bus* bus) const { sd_bus_flush_close_unref(bus); }
};
using Bus = std::unique_ptr<sd_bus, CloseBus>;

struct FreeMessage {
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using BusMessage = std::unique_ptr<sd_bus_message, FreeMessage>;

/// Null if there is none.
Bus openSessionBus() {
  sd_bus* bus = nullptr;
  if (sd_bus_open_user(&bus) < 0) return nullptr;
  sd_bus_set_method_call_timeout(bus, kTimeLimit);
  return Bus(bus);
}

/// Calls a method of the desktop's notification service. The types of the arguments are in the
/// notation of sd-bus. Null if the call fails.
template <class... Arguments>
BusMessage call(const Bus& bus, const char* method, const char* types, Arguments... arguments) {
  sd_bus_message* answer = nullptr;
  sd_bus_call_method(bus.get(), kName, "/org/freedesktop/Notifications", kName, method, nullptr,
                     &answer, types, arguments...);
  return BusMessage(answer);
}

/// A failure is harmless: the text is also on standard output or standard error.
void show(const std::string& summary, const std::string& body) {
  const Bus bus = openSessionBus();
  if (!bus) return;
  // The last arguments: no actions, no hints.
  (void)call(bus, "Notify", "susssasa{sv}i", "Seldial", kNoneToReplace, "call-start",
             summary.c_str(), escaped(body).c_str(), 0, 0, kDefaultDuration);
}

bool hasButtons(const Bus& bus) {
  const BusMessage capabilities = call(bus, "GetCapabilities", "");
  if (!capabilities || sd_bus_message_enter_container(capabilities.get(), 'a', "s") < 0) {
    return false;
  }
  const char* capability = nullptr;
  while (sd_bus_message_read(capabilities.get(), "s", &capability) > 0) {
    if (std::string_view(capability) == "actions") return true;
  }
  return false;
}

/// One notification with a button. One thread.
class Undo {
 public:
  /// Shows the notification and waits for its result.
  UndoOffer offer(const std::string& summary, std::chrono::milliseconds time) {
    const auto end = Clock::now() + time;
    if (!bus_ || !hasButtons(bus_) || !listen() || !notify(summary, time)) {
      return UndoOffer::kNotShown;
    }
    while (!outcome_ && waitUntil(end)) {
    }
    if (!outcome_) (void)call(bus_, "CloseNotification", "u", id_);
    return outcome_.value_or(UndoOffer::kTimeOver);
  }

 private:
  using Clock = std::chrono::steady_clock;

  bool listen() {
    return sd_bus_match_signal(bus_.get(), nullptr, kName, nullptr, kName, "ActionInvoked",
                               actionInvoked, this) >= 0 &&
           sd_bus_match_signal(bus_.get(), nullptr, kName, nullptr, kName, "NotificationClosed",
                               closed, this) >= 0;
  }

  bool notify(const std::string& summary, std::chrono::milliseconds time) {
    constexpr int kActionStrings = 2;
    const BusMessage answer =
        call(bus_, "Notify", "susssasa{sv}i", "Seldial", kNoneToReplace, "call-start",
             summary.c_str(), "", kActionStrings, "undo", translated("Undo").c_str(), 0,
             static_cast<std::int32_t>(time.count()));
    return answer && sd_bus_message_read(answer.get(), "u", &id_) > 0;
  }

  /// Handles the messages that have arrived, or waits for more. False if the time is over or the
  /// bus is gone.
  bool waitUntil(Clock::time_point end) {
    const int processed = sd_bus_process(bus_.get(), nullptr);
    if (processed != 0) return processed > 0;
    const auto left =
        std::chrono::duration_cast<std::chrono::microseconds>(end - Clock::now()).count();
    return left > 0 && sd_bus_wait(bus_.get(), static_cast<std::uint64_t>(left)) >= 0;
  }

  static int actionInvoked(sd_bus_message* signal, void* self, sd_bus_error* /*error*/) {
    auto& undo = *static_cast<Undo*>(self);
    std::uint32_t id = 0;
    const bool isRead = sd_bus_message_read(signal, "us", &id, nullptr) > 0;
    if (isRead && id == undo.id_) undo.outcome_ = UndoOffer::kUndone;
    return 0;
  }

  static int closed(sd_bus_message* signal, void* self, sd_bus_error* /*error*/) {
    auto& undo = *static_cast<Undo*>(self);
    std::uint32_t id = 0;
    std::uint32_t reason = 0;
    const bool isRead = sd_bus_message_read(signal, "uu", &id, &reason) > 0;
    // A notification whose button was pressed is closed afterwards.
    if (!isRead || id != undo.id_ || undo.outcome_) return 0;
    undo.outcome_ = reason == kDismissed ? UndoOffer::kUndone : UndoOffer::kTimeOver;
    return 0;
  }

  /// The reason "dismissed by the user" of the desktop notifications specification.
  static constexpr std::uint32_t kDismissed = 2;

  const Bus bus_ = openSessionBus();
  std::uint32_t id_ = 0;
  std::optional<UndoOffer> outcome_;
};

}  // namespace

void showNotification(const std::string& summary, const std::string& body) {
  std::thread(show, summary, body).detach();  // the bus may not answer
}

void showNotificationAndWait(const std::string& summary, const std::string& body) {
  show(summary, body);
}

void offerUndo(const std::string& summary, std::chrono::milliseconds time,
               std::function<void(UndoOffer)> ended) {
  std::thread([summary, time, ended = std::move(ended)] {
    ended(Undo().offer(summary, time));
  }).detach();
}

}  // namespace seldial
