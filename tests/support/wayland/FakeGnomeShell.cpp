// Mutter and GNOME Shell of FakeGnome.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include "tests/support/wayland/FakeGnome.h"

namespace seldial::tests {
namespace {

constexpr const char* kRemotePath = "/org/gnome/Mutter/RemoteDesktop/Session/u1";
constexpr const char* kRemoteSession = "org.gnome.Mutter.RemoteDesktop.Session";

}  // namespace

void FakeGnome::select(std::optional<std::string> text) {
  const std::lock_guard lock(mutex_);
  selection_ = std::move(text);
}

void FakeGnome::setCopiedTypes(std::vector<std::string> types) {
  const std::lock_guard lock(mutex_);
  copiedTypes_ = std::move(types);
}

void FakeGnome::setManager(Manager manager) {
  const std::lock_guard lock(mutex_);
  manager_ = std::move(manager);
}

void FakeGnome::lockScreen() {
  shell_.emit("/org/gnome/ScreenSaver", "org.gnome.ScreenSaver", "ActiveChanged", "b", 1);
}

void FakeGnome::listExtension(bool enabled) {
  const std::lock_guard lock(mutex_);
  extension_ = enabled;
}

std::vector<std::string> FakeGnome::typed() const {
  const std::lock_guard lock(mutex_);
  return typed_;
}

std::size_t FakeGnome::questions() const {
  const std::lock_guard lock(mutex_);
  return questions_;
}

bool FakeGnome::isRemoteSessionOpen() const {
  const std::lock_guard lock(mutex_);
  return remoteOpen_;
}

void FakeGnome::refuseRemoteSessions() {
  const std::lock_guard lock(mutex_);
  remoteRefused_ = true;
}

int FakeGnome::answerMutter(sd_bus_message* call) {
  if (isCall(call, kRemoteSession, "NotifyKeyboardKeysym")) return keyNotified(call);
  if (isCall(call, kRemoteSession, "SelectionRead")) return readSelection(call);
  const std::lock_guard lock(mutex_);
  if (isCall(call, "org.gnome.Mutter.RemoteDesktop", "CreateSession")) {
    if (remoteRefused_) return sd_bus_reply_method_errorf(call, SD_BUS_ERROR_ACCESS_DENIED, "no");
    return sd_bus_reply_method_return(call, "o", kRemotePath);
  }
  if (isCall(call, kRemoteSession, "EnableClipboard") ||
      isCall(call, kRemoteSession, "SetSelection")) {
    return clearClipboard(call);
  }
  const bool start = isCall(call, kRemoteSession, "Start");
  if (!start && !isCall(call, kRemoteSession, "Stop")) return 0;
  remoteOpen_ = start;
  return sd_bus_reply_method_return(call, "");
}

int FakeGnome::keyNotified(sd_bus_message* call) {
  std::uint32_t key = 0;
  int down = 0;
  sd_bus_message_read(call, "ub", &key, &down);
  bool answer = false;
  {
    const std::lock_guard lock(mutex_);
    if (key == XKB_KEY_Control_L) controlDown_ = down != 0;
    const bool isQuestion = key == XKB_KEY_XF86Launch9;
    if (down != 0 && isQuestion) {
      answer = !modifiersHeld_;
      ++questions_;
    } else if (down != 0 && key != XKB_KEY_Control_L) {
      std::array<char, 64> name{};
      xkb_keysym_get_name(key, name.data(), name.size());
      typed_.push_back((modifiersHeld_ ? "held+" : "") +
                       std::string(controlDown_ ? "Control+" : "") + name.data());
      if (typed_.back() == "Control+Insert" && selection_) {
        takeClipboard(sd_bus_message_get_bus(call), copiedTypes_, *selection_);
      }
      letLateManagerAct(sd_bus_message_get_bus(call));
    }
  }
  if (answer) tell("Activated", "modifiers-up");
  return sd_bus_reply_method_return(call, "");
}

void FakeGnome::takeClipboard(sd_bus* bus, const std::vector<std::string>& types,
                              const std::string& text) {
  clipboardTypes_ = types;
  clipboard_ = text;
  std::vector<char*> names;
  for (auto& type : clipboardTypes_) names.push_back(type.data());
  names.push_back(nullptr);
  sd_bus_message* signal = nullptr;
  sd_bus_message_new_signal(bus, &signal, kRemotePath, kRemoteSession, "SelectionOwnerChanged");
  sd_bus_message_open_container(signal, SD_BUS_TYPE_ARRAY, "{sv}");
  sd_bus_message_open_container(signal, SD_BUS_TYPE_DICT_ENTRY, "sv");
  sd_bus_message_append(signal, "s", "mime-types");
  sd_bus_message_open_container(signal, SD_BUS_TYPE_VARIANT, "(as)");
  sd_bus_message_open_container(signal, SD_BUS_TYPE_STRUCT, "as");
  sd_bus_message_append_strv(signal, names.data());
  for (int i = 0; i < 3; ++i) sd_bus_message_close_container(signal);
  sd_bus_message_append(signal, "{sv}", "session-is-owner", "b", 0);
  sd_bus_message_close_container(signal);
  sd_bus_send(bus, signal, nullptr);
  sd_bus_message_unref(signal);
}

void FakeGnome::letManagerAct(sd_bus* bus, Manager::Acts occasion) {
  if (manager_.acts != occasion || manager_.times-- <= 0) return;
  managerWaits_ = std::exchange(managerIsLate_, manager_.late);
  if (!managerWaits_) takeClipboard(bus, manager_.types, manager_.text);
}

void FakeGnome::letLateManagerAct(sd_bus* bus) {
  if (std::exchange(managerWaits_, false)) takeClipboard(bus, manager_.types, manager_.text);
}

int FakeGnome::clearClipboard(sd_bus_message* call) {
  auto* const bus = sd_bus_message_get_bus(call);
  clipboardTypes_.clear();
  sd_bus_emit_signal(bus, kRemotePath, kRemoteSession, "SelectionOwnerChanged", "a{sv}", 2,
                     "mime-types", "(as)", 1, "application/x-seldial-empty", "session-is-owner",
                     "b", 1);
  const int result = sd_bus_reply_method_return(call, "");
  letManagerAct(bus, Manager::Acts::kOnClearing);
  return result;
}

int FakeGnome::readSelection(sd_bus_message* call) {
  const char* type = nullptr;
  sd_bus_message_read(call, "s", &type);
  auto* const bus = sd_bus_message_get_bus(call);
  const std::lock_guard lock(mutex_);
  letManagerAct(bus, Manager::Acts::kBeforeTransfer);
  const bool offered =
      std::find(clipboardTypes_.begin(), clipboardTypes_.end(), type) != clipboardTypes_.end();
  std::array<int, 2> pipe{};
  if (!offered || pipe2(pipe.data(), O_CLOEXEC) != 0) {
    return sd_bus_reply_method_errorf(call, SD_BUS_ERROR_FAILED, "there is no %s", type);
  }
  const auto written = write(pipe[1], clipboard_.data(), clipboard_.size());
  close(pipe[1]);
  const int result = written >= 0 ? sd_bus_reply_method_return(call, "h", pipe[0]) : -EIO;
  close(pipe[0]);
  letManagerAct(bus, Manager::Acts::kAfterTransfer);
  return result;
}

int FakeGnome::answerShell(sd_bus_message* call) {
  if (!isCall(call, "org.gnome.Shell.Extensions", "ListExtensions")) return 0;
  mutter_.use([this](sd_bus* bus) {
    const std::lock_guard lock(mutex_);
    letLateManagerAct(bus);
  });
  const std::lock_guard lock(mutex_);
  if (!extension_) return sd_bus_reply_method_return(call, "a{sa{sv}}", 0);
  return sd_bus_reply_method_return(call, "a{sa{sv}}", 1, "manager@test", 2, "uuid", "s",
                                    "manager@test", "state", "d", *extension_ ? 1.0 : 2.0);
}

}  // namespace seldial::tests
