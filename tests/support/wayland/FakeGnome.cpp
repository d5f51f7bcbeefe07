// The desktop portal of FakeGnome.
#include "tests/support/wayland/FakeGnome.h"

#include <utility>

namespace seldial::tests {
namespace {

constexpr const char* kPortalPath = "/org/freedesktop/portal/desktop";
constexpr const char* kShortcuts = "org.freedesktop.portal.GlobalShortcuts";
constexpr const char* kRequest = "org.freedesktop.portal.Request";
constexpr const char* kSession = "org.freedesktop.portal.Session";

/// The object path that a portal derives from the caller's name and a token.
std::string pathOf(const char* kind, sd_bus_message* call, const std::string& token) {
  std::string sender = sd_bus_message_get_sender(call) + 1;
  for (auto& character : sender) {
    if (character == '.') character = '_';
  }
  return std::string(kPortalPath) + "/" + kind + "/" + sender + "/" + token;
}

/// The texts of a dictionary that comes next.
std::map<std::string, std::string> readTexts(sd_bus_message* message) {
  std::map<std::string, std::string> texts;
  sd_bus_message_enter_container(message, SD_BUS_TYPE_ARRAY, "{sv}");
  while (sd_bus_message_enter_container(message, SD_BUS_TYPE_DICT_ENTRY, "sv") > 0) {
    const char* key = "";
    const char* value = "";
    sd_bus_message_read(message, "s", &key);
    sd_bus_message_read(message, "v", "s", &value);
    texts[key] = value;
    sd_bus_message_exit_container(message);
  }
  sd_bus_message_exit_container(message);
  return texts;
}

void appendShortcuts(sd_bus_message* message, const std::map<std::string, std::string>& shortcuts) {
  sd_bus_message_open_container(message, SD_BUS_TYPE_ARRAY, "(sa{sv})");
  for (const auto& [id, trigger] : shortcuts) {
    sd_bus_message_append(message, "(sa{sv})", id.c_str(), 2, "description", "s", "a shortcut",
                          "trigger_description", "s", trigger.c_str());
  }
  sd_bus_message_close_container(message);
}

}  // namespace

FakeGnome::FakeGnome(const SessionBus& bus)
    : bus_(bus),
      mutter_(bus, "org.gnome.Mutter.RemoteDesktop",
              [this](sd_bus_message* call) { return answerMutter(call); }),
      shell_(bus, "org.gnome.Shell", [this](sd_bus_message* call) { return answerShell(call); }) {
  startImplementation();
  startPortal();
}

void FakeGnome::startPortal() {
  portal_.emplace(bus_, "org.freedesktop.portal.Desktop",
                  [this](sd_bus_message* call) { return answerPortal(call); });
}

void FakeGnome::startImplementation() {
  implementation_.emplace(bus_, "org.freedesktop.impl.portal.desktop.gnome",
                          [this](sd_bus_message* call) { return answerImplementation(call); });
}

void FakeGnome::restartPortal() {
  {
    const std::lock_guard lock(mutex_);
    request_.clear();
  }
  portal_.reset();
  startPortal();
}

void FakeGnome::restartImplementation() {
  implementation_.reset();
  {
    const std::lock_guard lock(mutex_);
    unbind();
  }
  startImplementation();
}

int FakeGnome::answerImplementation(sd_bus_message* call) {
  if (!isCall(call, "org.freedesktop.impl.portal.Session", "Close")) return 0;
  const std::lock_guard lock(mutex_);
  if (sd_bus_message_get_path(call) == grabbing_) unbind();
  return sd_bus_reply_method_return(call, "");
}

void FakeGnome::unbind() {
  bound_.clear();
  grabbing_.clear();
}

int FakeGnome::answerPortal(sd_bus_message* call) {
  if (isCall(call, "org.freedesktop.DBus.Properties", "Get")) {
    return sd_bus_reply_method_return(call, "v", "u", 1);
  }
  if (isCall(call, "org.freedesktop.host.portal.Registry", "Register")) {
    const std::lock_guard lock(mutex_);
    return known_ ? sd_bus_reply_method_return(call, "")
                  : sd_bus_reply_method_errorf(call, "org.freedesktop.portal.Error.Failed",
                                               "App info not found");
  }
  if (isCall(call, kShortcuts, "CreateSession")) return createPortalSession(call);
  if (isCall(call, kShortcuts, "BindShortcuts")) return bindShortcuts(call);
  if (isCall(call, kSession, "Close") || isCall(call, kRequest, "Close")) {
    const std::lock_guard lock(mutex_);
    unbind();
    return sd_bus_reply_method_return(call, "");
  }
  return 0;
}

int FakeGnome::createPortalSession(sd_bus_message* call) {
  const auto options = readTexts(call);
  const auto request = pathOf("request", call, options.at("handle_token"));
  const auto session = pathOf("session", call, options.at("session_handle_token"));
  {
    const std::lock_guard lock(mutex_);
    session_ = session;
  }
  // The signal may arrive before the reply.
  sd_bus_emit_signal(sd_bus_message_get_bus(call), request.c_str(), kRequest, "Response", "ua{sv}",
                     0, 1, "session_handle", "s", session.c_str());
  return sd_bus_reply_method_return(call, "o", request.c_str());
}

int FakeGnome::bindShortcuts(sd_bus_message* call) {
  const std::lock_guard lock(mutex_);
  const char* session = nullptr;
  sd_bus_message_read(call, "o", &session);
  sd_bus_message_enter_container(call, SD_BUS_TYPE_ARRAY, "(sa{sv})");
  ++bindings_;
  if (grabbing_.empty()) grabbing_ = session;
  bound_.clear();
  while (sd_bus_message_enter_container(call, SD_BUS_TYPE_STRUCT, "sa{sv}") > 0) {
    const char* id = nullptr;
    sd_bus_message_read(call, "s", &id);
    const auto trigger = readTexts(call).at("preferred_trigger");
    bound_[id] = chosen_.contains(id) ? chosen_[id] : trigger;
    sd_bus_message_exit_container(call);
  }
  sd_bus_message_exit_container(call);
  const char* window = nullptr;
  sd_bus_message_read(call, "s", &window);
  request_ = pathOf("request", call, readTexts(call).at("handle_token"));
  const int result = sd_bus_reply_method_return(call, "o", request_.c_str());
  if (consent_ != Consent::kAsked) {
    respond(sd_bus_message_get_bus(call), consent_ == Consent::kGiven);
  }
  return result;
}

/// Uses the code of a failure in both cases, like GNOME 48.
void FakeGnome::respond(sd_bus* bus, bool allow) {
  if (!allow) unbind();
  sd_bus_message* signal = nullptr;
  sd_bus_message_new_signal(bus, &signal, request_.c_str(), kRequest, "Response");
  sd_bus_message_append(signal, "u", 2);
  sd_bus_message_open_container(signal, SD_BUS_TYPE_ARRAY, "{sv}");
  if (allow) {
    sd_bus_message_open_container(signal, SD_BUS_TYPE_DICT_ENTRY, "sv");
    sd_bus_message_append(signal, "s", "shortcuts");
    sd_bus_message_open_container(signal, SD_BUS_TYPE_VARIANT, "a(sa{sv})");
    appendShortcuts(signal, bound_);
    sd_bus_message_close_container(signal);
    sd_bus_message_close_container(signal);
  }
  sd_bus_message_close_container(signal);
  sd_bus_send(bus, signal, nullptr);
  sd_bus_message_unref(signal);
}

void FakeGnome::setConsent(Consent consent) {
  const std::lock_guard lock(mutex_);
  consent_ = consent;
}

void FakeGnome::answer(bool allow) {
  portal_->use([&](sd_bus* bus) {
    const std::lock_guard lock(mutex_);
    respond(bus, allow);
  });
}

void FakeGnome::setTrigger(const std::string& id, const std::string& description) {
  portal_->use([&](sd_bus* bus) {
    const std::lock_guard lock(mutex_);
    chosen_[id] = description;
    if (!bound_.contains(id)) return;
    bound_[id] = description;
    sd_bus_message* signal = nullptr;
    sd_bus_message_new_signal(bus, &signal, kPortalPath, kShortcuts, "ShortcutsChanged");
    sd_bus_message_append(signal, "o", session_.c_str());
    appendShortcuts(signal, bound_);
    sd_bus_send(bus, signal, nullptr);
    sd_bus_message_unref(signal);
  });
}

void FakeGnome::forgetApplication() {
  const std::lock_guard lock(mutex_);
  known_ = false;
}

void FakeGnome::closePortalSession() {
  portal_->use([&](sd_bus* bus) {
    const std::lock_guard lock(mutex_);
    unbind();
    sd_bus_emit_signal(bus, session_.c_str(), kSession, "Closed", "a{sv}", 0);
  });
}

std::map<std::string, std::string> FakeGnome::bound() const {
  const std::lock_guard lock(mutex_);
  return bound_;
}

std::size_t FakeGnome::bindings() const {
  const std::lock_guard lock(mutex_);
  return bindings_;
}

void FakeGnome::holdModifiers(bool held) {
  const std::lock_guard lock(mutex_);
  modifiersHeld_ = held;
}

void FakeGnome::press(const std::string& id) {
  tell("Activated", id);
}

void FakeGnome::release(const std::string& id) {
  tell("Deactivated", id);
}

/// Also answers the question whether modifiers are down.
void FakeGnome::tell(const char* signal, const std::string& id) {
  portal_->use([&](sd_bus* bus) {
    const std::lock_guard lock(mutex_);
    if (!bound_.contains(id) || grabbing_ != session_) return;
    sd_bus_emit_signal(bus, kPortalPath, kShortcuts, signal, "osta{sv}", session_.c_str(),
                       id.c_str(), ++time_, 0);
  });
}

void FakeGnome::answerModifiers(int milliseconds) {
  portal_->use([&](sd_bus* bus) {
    const std::lock_guard lock(mutex_);
    sd_bus_emit_signal(bus, kPortalPath, kShortcuts, "Activated", "osta{sv}", session_.c_str(),
                       "modifiers-up", time_ + static_cast<std::uint64_t>(milliseconds), 0);
  });
}

}  // namespace seldial::tests
