#include "platform/wayland/MutterRemote.h"

#include <fcntl.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <utility>

namespace seldial::platform::wayland {
namespace {

/// How long an extension of GNOME Shell may take to react to a change of the clipboard.
constexpr std::chrono::seconds kReaction{1};

/// How long the clipboard may keep changing.
constexpr std::chrono::seconds kQuietLimit{3};

/// The state of an extension that is enabled and running.
constexpr double kActive = 1;

const BusObject kExtensions{"org.gnome.Shell", "/org/gnome/Shell", "org.gnome.Shell.Extensions"};

const BusObject kRemoteDesktop{"org.gnome.Mutter.RemoteDesktop", "/org/gnome/Mutter/RemoteDesktop",
                               "org.gnome.Mutter.RemoteDesktop"};

/// Reads a variant with a list of types.
bool readTypes(sd_bus_message* message, std::vector<std::string>& types) {
  char** list = nullptr;
  const bool read = sd_bus_message_enter_container(message, SD_BUS_TYPE_VARIANT, "(as)") > 0 &&
                    sd_bus_message_enter_container(message, SD_BUS_TYPE_STRUCT, "as") > 0 &&
                    sd_bus_message_read_strv(message, &list) >= 0;
  for (char** type = list; type != nullptr && *type != nullptr; ++type) {
    types.emplace_back(*type);
    free(*type);
  }
  free(static_cast<void*>(list));
  return read && sd_bus_message_exit_container(message) >= 0 &&
         sd_bus_message_exit_container(message) >= 0;
}

/// The serial number that the sender has given to a message. It increases from message to message.
std::uint64_t serialOf(sd_bus_message* message) {
  std::uint64_t serial = 0;
  sd_bus_message_get_cookie(message, &serial);
  return serial;
}

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
  forgetCopy();
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
  forgetCopy();
  return taken;
}

// Requests a copied text at once, because a clipboard manager may take over the clipboard later.
void MutterRemote::ownerChanged(sd_bus_message* signal) {
  bool ours = false;
  std::vector<std::string> types;
  visitDictionary(signal, [&](const std::string& key) {
    if (key == "mime-types") return readTypes(signal, types);
    int value = 0;
    const bool read =
        key == "session-is-owner" && sd_bus_message_read(signal, "v", "b", &value) > 0;
    ours = ours || value != 0;
    return read;
  });
  if (ours) return;
  changed_ = true;
  const bool requested = replySerial_ != 0 && replySerial_ < serialOf(signal);
  const auto owner = ownerOf(types);
  const bool copied = owner == Owner::kApplication || (owner == Owner::kUnknown && !requested);
  if (!copied && requested) return;
  // If the text was requested later, it may be the new owner's.
  const bool lost = !copied && !copiedType_.empty();
  forgetCopy();
  lost_ = lost;
  if (!copied) return;
  isSure_ = owner == Owner::kApplication;
  std::size_t best = std::size(kTextTypes);
  for (const auto& type : types) best = std::min(best, textTypeRank(type.c_str()));
  if (best == std::size(kTextTypes)) return;
  copiedType_ = kTextTypes[best];
  request();
}

MutterRemote::Owner MutterRemote::ownerOf(const std::vector<std::string>& types) const {
  // X11 programs must offer this type, others do not.
  const bool isX11 = std::find(types.begin(), types.end(), "TARGETS") != types.end();
  if (isX11) return focusedX11ProgramOwnsClipboard_() ? Owner::kApplication : Owner::kManager;
  // GNOME Shell offers one type only.
  if (types.size() > 1) return Owner::kApplication;
  return types.empty() ? Owner::kManager : Owner::kUnknown;
}

void MutterRemote::request() {
  const auto reply = bus_.call(session(), "SelectionRead", "s", copiedType_.c_str());
  int pipe = -1;
  if (!reply || sd_bus_message_read(reply.get(), "h", &pipe) <= 0) return;
  const int ours = fcntl(pipe, F_DUPFD_CLOEXEC, 0);
  if (ours == -1) return;
  incoming_.beginFrom(ours);
  replySerial_ = serialOf(reply.get());
}

void MutterRemote::forgetCopy() {
  incoming_.abandon();
  copiedType_.clear();
  replySerial_ = 0;
  lost_ = false;
}

std::optional<std::string> MutterRemote::copiedText() {
  if (session_.empty() || !owner_) return {};
  // Signals that Mutter has sent so far arrive before its reply.
  BusObject mutter = kRemoteDesktop;
  mutter.interface = "org.freedesktop.DBus.Peer";
  bus_.call(mutter, "Ping", "");
  const auto handleSignals = [this] {
    bus_.waitFor([] { return true; }, std::chrono::milliseconds(0));
  };
  handleSignals();
  if (!copiedType_.empty() && replySerial_ == 0) {  // Mutter has refused the early request
    request();
    handleSignals();
  }
  return incoming_.finish();
}

bool MutterRemote::clearAgain() {
  const auto limit = Clock::now() + kQuietLimit;
  if (!bus_.call(session(), "SetSelection", "a{sv}", 1, "mime-types", "as", 1, kEmptyClipboardType))
    return false;
  changed_ = false;
  const auto isChanged = [this] { return std::exchange(changed_, false); };
  // On a busy machine an extension may take longer. GNOME Shell runs the extensions, and answers
  // only after they have done what was due.
  const auto changesLate = [&] {
    bus_.call(kExtensions, "ListExtensions", "");
    return bus_.waitFor(isChanged, std::chrono::milliseconds(0));
  };
  while (bus_.waitFor(isChanged, kReaction) || changesLate()) {
    if (Clock::now() > limit) return false;
  }
  forgetCopy();
  return true;
}

bool MutterRemote::mayBeFromExtension() {
  if (isSure_) return false;
  const auto reply = bus_.call(kExtensions, "ListExtensions", "");
  if (!reply || sd_bus_message_enter_container(reply.get(), SD_BUS_TYPE_ARRAY, "{sa{sv}}") < 0)
    return true;
  while (sd_bus_message_enter_container(reply.get(), SD_BUS_TYPE_DICT_ENTRY, "sa{sv}") > 0) {
    double state = kActive;
    if (sd_bus_message_skip(reply.get(), "s") < 0) return true;
    visitDictionary(reply.get(), [&](const std::string& key) {
      return key == "state" && sd_bus_message_read(reply.get(), "v", "d", &state) > 0;
    });
    if (state == kActive || sd_bus_message_exit_container(reply.get()) < 0) return true;
  }
  return false;
}

void MutterRemote::wait(Clock::duration time) {
  bus_.waitFor([] { return false; }, std::chrono::ceil<std::chrono::milliseconds>(time));
}

}  // namespace seldial::platform::wayland
