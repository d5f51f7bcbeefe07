#include "platform/wayland/GlobalAccel.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <utility>

namespace seldial::platform::wayland {
namespace {

constexpr const char* kComponent = "seldial";
constexpr const char* kComponentTitle = "Seldial";

const BusObject kShortcuts{GlobalAccel::kService, "/kglobalaccel", "org.kde.KGlobalAccel"};
const BusObject kOwnComponent{GlobalAccel::kService, "/component/seldial",
                              "org.kde.kglobalaccel.Component"};

/// KWin, and the text before the Qt version in its support information.
const BusObject kKWin{"org.kde.KWin", "/KWin", "org.kde.KWin"};
constexpr std::string_view kBeforeQtVersion = "Qt Version: ";

/// Flags of setShortcutKeys: the program is running; its keys override the stored ones.
constexpr std::uint32_t kSetPresent = 2;
constexpr std::uint32_t kNoAutoloading = 4;

/// Appends the identification of an action.
bool appendAction(sd_bus_message* message, const std::string& action, const std::string& title) {
  return sd_bus_message_append(message, "as", 4, kComponent, action.c_str(), kComponentTitle,
                               title.c_str()) >= 0;
}

/// Appends key sequences of one key each; a sequence is four numbers.
bool appendKeys(sd_bus_message* message, const std::vector<int>& keys) {
  bool good = sd_bus_message_open_container(message, 'a', "(ai)") >= 0;
  for (const int key : keys) {
    good = good && sd_bus_message_append(message, "(ai)", 4, key, 0, 0, 0) >= 0;
  }
  return good && sd_bus_message_close_container(message) >= 0;
}

/// The first key of each sequence that follows in the message.
std::vector<int> readKeys(sd_bus_message* message) {
  std::vector<int> keys;
  if (sd_bus_message_enter_container(message, 'a', "(ai)") <= 0) return keys;
  while (sd_bus_message_enter_container(message, 'r', "ai") > 0) {
    const void* numbers = nullptr;
    std::size_t bytes = 0;
    const int result = sd_bus_message_read_array(message, 'i', &numbers, &bytes);
    if (result > 0 && bytes >= sizeof(std::int32_t)) {
      keys.push_back(*static_cast<const std::int32_t*>(numbers));
    }
    if (result < 0 || sd_bus_message_exit_container(message) < 0) break;
  }
  return keys;
}

bool isPart(std::vector<int> keys, std::vector<int> granted) {
  std::sort(keys.begin(), keys.end());
  std::sort(granted.begin(), granted.end());
  return std::includes(granted.begin(), granted.end(), keys.begin(), keys.end());
}

Bus::SignalHandler withAction(GlobalAccel::Handler handler) {
  return [handler = std::move(handler)](sd_bus_message* signal) {
    const char* component = nullptr;
    const char* action = nullptr;
    if (sd_bus_message_read(signal, "ss", &component, &action) > 0) handler(action);
  };
}

}  // namespace

bool GlobalAccel::listen(Handler pressed, Handler released) {
  pressed_ = bus_.onSignal(kOwnComponent, "globalShortcutPressed", withAction(std::move(pressed)));
  released_ =
      bus_.onSignal(kOwnComponent, "globalShortcutReleased", withAction(std::move(released)));
  return pressed_ && released_;
}

bool GlobalAccel::set(const std::string& action, const std::string& title,
                      const std::vector<int>& keys) {
  auto registering = bus_.newCall(kShortcuts, "doRegister");
  if (!registering || !appendAction(registering.get(), action, title) ||
      !bus_.call(std::move(registering))) {
    return false;
  }
  auto setting = bus_.newCall(kShortcuts, "setShortcutKeys");
  const bool complete =
      setting && appendAction(setting.get(), action, title) && appendKeys(setting.get(), keys) &&
      sd_bus_message_append(setting.get(), "u", kSetPresent | kNoAutoloading) >= 0;
  const auto reply = complete ? bus_.call(std::move(setting)) : nullptr;
  if (reply && isPart(keys, readKeys(reply.get()))) return true;
  remove(action);
  return false;
}

void GlobalAccel::remove(const std::string& action) {
  bus_.call(kShortcuts, "unregister", "ss", kComponent, action.c_str());
}

int GlobalAccel::qtVersion() {
  if (qtVersion_ != 0) return qtVersion_;
  const auto reply = bus_.call(kKWin, "supportInformation", "");
  const char* description = nullptr;
  std::string_view text;
  if (reply && sd_bus_message_read(reply.get(), "s", &description) > 0) text = description;
  const auto found = text.find(kBeforeQtVersion);
  const bool isOlder =
      found == text.npos || text.substr(found + kBeforeQtVersion.size()).starts_with('5');
  qtVersion_ = isOlder ? 5 : 6;
  return qtVersion_;
}

std::vector<std::string> GlobalAccel::actions() {
  std::vector<std::string> names;
  const auto reply = bus_.call(kOwnComponent, "shortcutNames", "");
  if (!reply || sd_bus_message_enter_container(reply.get(), 'a', "s") < 0) return names;
  const char* name = nullptr;
  while (sd_bus_message_read(reply.get(), "s", &name) > 0) names.emplace_back(name);
  return names;
}

}  // namespace seldial::platform::wayland
