#include "platform/wayland/MutterRemote.h"

#include <fcntl.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/wayland/ClipboardText.h"

namespace seldial::platform::wayland {
namespace {

const BusObject kRemoteDesktop{"org.gnome.Mutter.RemoteDesktop", "/org/gnome/Mutter/RemoteDesktop",
                               "org.gnome.Mutter.RemoteDesktop"};

}  // namespace

bool MutterRemote::isOffered(Bus& bus) {
  return bus.hasOwner(kRemoteDesktop.service);
}

MutterRemote::~MutterRemote() {
  close();
}

BusObject MutterRemote::session() const {
  return {kRemoteDesktop.service, session_, kRemoteDesktop.interface + ".Session"};
}

bool MutterRemote::open() {
  if (!session_.empty()) return true;
  const auto reply = bus_.call(kRemoteDesktop, "CreateSession", "");
  const char* path = nullptr;
  if (!reply || sd_bus_message_read(reply.get(), "o", &path) <= 0) return false;
  session_ = path;
  closed_ =
      bus_.onSignal(session(), "Closed", [this](sd_bus_message* /*signal*/) { session_.clear(); });
  if (bus_.call(session(), "Start", "")) return true;
  close();
  return false;
}

void MutterRemote::close() {
  owner_.reset();
  closed_.reset();
  if (!session_.empty()) bus_.call(session(), "Stop", "");
  session_.clear();
}

bool MutterRemote::type(xkb_keysym_t key, bool withControl) {
  if (session_.empty()) return false;
  // Every pressed key is released, whatever fails.
  bool typed = !withControl || press(XKB_KEY_Control_L, true);
  typed = typed && press(key, true);
  typed = press(key, false) && typed;
  if (withControl) typed = press(XKB_KEY_Control_L, false) && typed;
  return typed;
}

bool MutterRemote::press(xkb_keysym_t key, bool down) {
  return bus_.call(session(), "NotifyKeyboardKeysym", "ub", key, down ? 1 : 0) != nullptr;
}

bool MutterRemote::takeClipboard() {
  if (session_.empty()) return false;
  owner_ = bus_.onSignal(session(), "SelectionOwnerChanged",
                         [this](sd_bus_message* signal) { ownerChanged(signal); });
  const bool taken = bus_.call(session(), "EnableClipboard", "a{sv}", 1, "mime-types", "as", 1,
                               kEmptyClipboardType) != nullptr;
  // Handles the signals from before we took the clipboard.
  bus_.waitFor([] { return true; }, std::chrono::milliseconds(0));
  copiedType_.clear();
  return taken;
}

void MutterRemote::ownerChanged(sd_bus_message* signal) {
  bool ours = false;
  copiedType_.clear();
  std::size_t best = std::size(kTextTypes);
  visitDictionary(signal, [&](const std::string& key) {
    if (key == "session-is-owner") {
      int value = 0;
      if (sd_bus_message_read(signal, "v", "b", &value) <= 0) return false;
      ours = value != 0;
      return true;
    }
    if (key != "mime-types") return false;
    char** types = nullptr;
    const bool read = sd_bus_message_enter_container(signal, SD_BUS_TYPE_VARIANT, "(as)") > 0 &&
                      sd_bus_message_enter_container(signal, SD_BUS_TYPE_STRUCT, "as") > 0 &&
                      sd_bus_message_read_strv(signal, &types) >= 0;
    for (char** type = types; type != nullptr && *type != nullptr; ++type) {
      best = std::min(best, textTypeRank(*type));
      free(*type);
    }
    free(static_cast<void*>(types));
    return read && sd_bus_message_exit_container(signal) >= 0 &&
           sd_bus_message_exit_container(signal) >= 0;
  });
  if (!ours && best < std::size(kTextTypes)) copiedType_ = kTextTypes[best];
}

std::optional<std::string> MutterRemote::copiedText() {
  if (session_.empty() || !owner_) return {};
  // Signals that Mutter has sent so far arrive before its reply.
  BusObject mutter = kRemoteDesktop;
  mutter.interface = "org.freedesktop.DBus.Peer";
  bus_.call(mutter, "Ping", "");
  bus_.waitFor([] { return true; }, std::chrono::milliseconds(0));
  if (copiedType_.empty()) return {};
  const auto reply = bus_.call(session(), "SelectionRead", "s", copiedType_.c_str());
  int pipe = -1;
  if (!reply || sd_bus_message_read(reply.get(), "h", &pipe) <= 0) return {};
  return readClipboardText(pipe);
}

}  // namespace seldial::platform::wayland
