#include <systemd/sd-bus.h>

#include <memory>
#include <thread>

#include "ucclient/Notifications.h"

namespace seldial {
namespace {

/// How long the desktop may take to answer, microseconds.
constexpr std::uint64_t kTimeLimit = 5'000'000;
constexpr std::int32_t kDesktopsOwnDuration = -1;
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

/// A failure is no loss: standard output or standard error has the same text.
void show(const std::string& summary, const std::string& body) {
  sd_bus* opened = nullptr;
  if (sd_bus_open_user(&opened) < 0) return;
  const std::unique_ptr<sd_bus, decltype(&sd_bus_flush_close_unref)> bus(opened,
                                                                         sd_bus_flush_close_unref);
  sd_bus_set_method_call_timeout(bus.get(), kTimeLimit);
  // The last arguments are no actions, no hints.
  sd_bus_call_method(bus.get(), "org.freedesktop.Notifications", "/org/freedesktop/Notifications",
                     "org.freedesktop.Notifications", "Notify", nullptr, nullptr, "susssasa{sv}i",
                     "Seldial", kNoneToReplace, "call-start", summary.c_str(),
                     escaped(body).c_str(), 0, 0, kDesktopsOwnDuration);
}

}  // namespace

void showNotification(const std::string& summary, const std::string& body) {
  std::thread(show, summary, body).detach();  // a bus that does not answer holds nobody up
}

}  // namespace seldial
