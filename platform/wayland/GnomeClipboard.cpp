#include "platform/wayland/GnomeClipboard.h"

#include <fcntl.h>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <iterator>
#include <string_view>
#include <system_error>
#include <utility>

#include "platform/Output.h"
#include "platform/linux/Applications.h"
#include "platform/wayland/ClipboardText.h"
#include "platform/wayland/FocusedProgram.h"

namespace seldial::platform::wayland {
namespace {

const BusObject kRemoteDesktop{"org.gnome.Mutter.RemoteDesktop", "/org/gnome/Mutter/RemoteDesktop",
                               "org.gnome.Mutter.RemoteDesktop"};

bool isOwnProcess(const std::filesystem::path& process) {
  struct stat status {};
  return stat(process.c_str(), &status) == 0 && status.st_uid == geteuid();
}

/// Whether every copy keystroke does harm in the program, or copies text that is not selected.
bool isUnsupported(const std::string& name) {
  constexpr std::string_view kEmacs = "emacs";  // emacs-gtk, emacs-pgtk
  return linux_port::isUnsupported({name}) ||
         strncasecmp(name.c_str(), kEmacs.data(), kEmacs.size()) == 0;
}

bool isOtherTerminal(const std::string& name) {
  return linux_port::terminalKind(name) == linux_port::TerminalKind::kOther;
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

std::vector<std::string> runningPrograms() {
  std::vector<std::string> programs;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator("/proc", error)) {
    const std::string number = entry.path().filename();
    if (std::isdigit(static_cast<unsigned char>(number[0])) == 0 || !isOwnProcess(entry.path()))
      continue;
    auto name = processName(static_cast<std::uint32_t>(std::stoul(number)));
    if (!name.empty()) programs.push_back(std::move(name));
  }
  return programs;
}

void GnomeClipboard::clear() {
  taken_ = remote_.open() && remote_.takeClipboard();
}

bool GnomeClipboard::copySelection() {
  if (!taken_) return false;
  programs_ = runningPrograms_();
  const auto alone = std::find_if(programs_.begin(), programs_.end(), isUnsupported);
  if (alone != programs_.end()) {
    reportOnce("while " + *alone + " runs, nothing is copied under GNOME");
    return true;
  }
  const auto terminal = std::find_if(programs_.begin(), programs_.end(), isOtherTerminal);
  if (terminal == programs_.end()) {
    lastReport_.clear();
    return remote_.type(XKB_KEY_Insert, true);
  }
  reportOnce("while " + *terminal +
             " runs, Seldial copies only from programs that support the Copy key");
  return remote_.type(XKB_KEY_XF86Copy);
}

/// Writes one line to standard error, unless it repeats the previous one.
void GnomeClipboard::reportOnce(const std::string& line) {
  if (std::exchange(lastReport_, line) != line) printError("seldial: " + line);
}

std::optional<std::string> GnomeClipboard::text() {
  auto text = std::exchange(taken_, false) ? remote_.copiedText() : std::nullopt;
  remote_.close();
  // Terminals copy an empty text if nothing is selected.
  if (text && (text->empty() || linux_port::mayBeCurrentLine(programs_, *text))) return {};
  return text;
}

}  // namespace seldial::platform::wayland
