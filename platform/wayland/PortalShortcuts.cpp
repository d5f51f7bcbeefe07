#include "platform/wayland/PortalShortcuts.h"

#include <algorithm>
#include <utility>

namespace seldial::platform::wayland {
namespace {

/// How long bind() waits. A desktop that does not ask the user answers within half a second.
constexpr std::chrono::seconds kTimeout{1};

const BusObject kShortcuts{"org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
                           "org.freedesktop.portal.GlobalShortcuts"};

/// GNOME's implementation of the portal, which binds the shortcuts.
constexpr const char* kImplementation = "org.freedesktop.impl.portal.desktop.gnome";

/// Another interface or object of the portal.
BusObject portal(const char* interface, const std::string& path = kShortcuts.path) {
  return {kShortcuts.service, path, interface};
}

/// The path of the request that a call with this token creates.
std::string requestPath(std::string name, const std::string& token) {
  name.erase(0, 1);
  std::replace(name.begin(), name.end(), '.', '_');
  return kShortcuts.path + "/request/" + name + "/" + token;
}

/// Reads a variant with a text.
bool readText(sd_bus_message* message, std::string& text) {
  const char* type = nullptr;
  if (sd_bus_message_peek_type(message, nullptr, &type) <= 0) return false;
  const std::string held = type;
  const char* value = nullptr;
  if ((held != "s" && held != "o") ||
      sd_bus_message_read(message, "v", held.c_str(), &value) <= 0) {
    return false;
  }
  text = value;
  return true;
}

/// The triggers in an array of shortcuts, by id.
std::map<std::string, std::string> readTriggers(sd_bus_message* message) {
  std::map<std::string, std::string> triggers;
  if (sd_bus_message_enter_container(message, SD_BUS_TYPE_ARRAY, "(sa{sv})") <= 0) return {};
  while (sd_bus_message_enter_container(message, SD_BUS_TYPE_STRUCT, "sa{sv}") > 0) {
    const char* id = nullptr;
    if (sd_bus_message_read(message, "s", &id) <= 0) return {};
    auto& trigger = triggers[id];
    const bool whole = visitDictionary(message, [&](const std::string& key) {
      return key == "trigger_description" && readText(message, trigger);
    });
    if (!whole || sd_bus_message_exit_container(message) < 0) return {};
  }
  sd_bus_message_exit_container(message);
  return triggers;
}

}  // namespace

PortalShortcuts::PortalShortcuts(Bus& bus, Handlers handlers)
    : bus_(bus),
      handlers_(std::move(handlers)),
      owner_(bus.onOwnerChange(kShortcuts.service, [this](bool there) { portalChanged(there); })),
      implementation_(bus.onOwnerChange(kImplementation,
                                        [this](bool there) { implementationChanged(there); })) {}

PortalShortcuts::~PortalShortcuts() {
  release();
}

bool PortalShortcuts::isOffered(Bus& bus) {
  return bus.call(portal("org.freedesktop.DBus.Properties"), "Get", "ss",
                  kShortcuts.interface.c_str(), "version") != nullptr;
}

PortalShortcuts::Answer PortalShortcuts::bind(std::vector<PortalShortcut> shortcuts) {
  release();
  wanted_ = std::move(shortcuts);
  binding_ = true;
  start();
  bus_.waitFor([this] { return answer_ != Answer::kAsked; }, kTimeout);
  binding_ = false;
  return answer_;
}

void PortalShortcuts::release() {
  wanted_.clear();
  triggers_.clear();
  response_.reset();
  signals_.clear();
  const std::string request = std::exchange(pending_, {});
  if (!request.empty()) {  // this also closes its dialog
    bus_.call(portal("org.freedesktop.portal.Request", request), "Close", "");
  }
  const std::string session = std::exchange(session_, {});
  if (!session.empty()) {
    bus_.call(portal("org.freedesktop.portal.Session", session), "Close", "");
  }
}

std::string PortalShortcuts::triggerOf(const std::string& id) const {
  const auto found = triggers_.find(id);
  return found != triggers_.end() ? found->second : std::string();
}

/// The answer arrives in the loop or in waitFor().
void PortalShortcuts::start() {
  answer_ = Answer::kAsked;
  if (registerApplication()) createSession();
}

bool PortalShortcuts::registerApplication() {
  auto call = bus_.newCall(portal("org.freedesktop.host.portal.Registry"), "Register");
  if (call) sd_bus_message_append(call.get(), "sa{sv}", kApplicationId, 0);
  if (bus_.call(std::move(call))) return true;
  // A portal accepts the application ID of a connection only once. This error means that it already
  // knows ours.
  if (bus_.error().find("already associated") != std::string::npos) return true;
  finish(Answer::kRefused, "the portal does not know this program: " + bus_.error());
  return false;
}

void PortalShortcuts::createSession() {
  const std::string token = "seldial" + std::to_string(requests_);
  const auto fill = [&token](sd_bus_message* call) {
    sd_bus_message_append(call, "a{sv}", 2, "handle_token", "s", token.c_str(),
                          "session_handle_token", "s", token.c_str());
  };
  request("CreateSession", fill, [this](std::uint32_t code, sd_bus_message* results) {
    visitDictionary(results, [&](const std::string& key) {
      return key == "session_handle" && readText(results, session_);
    });
    if (code != 0 || session_.empty())
      return finish(Answer::kRefused, "the portal opened no session");
    listen();
    bindShortcuts();
  });
}

void PortalShortcuts::bindShortcuts() {
  const std::string token = "seldial" + std::to_string(requests_);
  const auto fill = [&](sd_bus_message* call) {
    sd_bus_message_append(call, "o", session_.c_str());
    sd_bus_message_open_container(call, SD_BUS_TYPE_ARRAY, "(sa{sv})");
    for (const auto& shortcut : wanted_) {
      sd_bus_message_append(call, "(sa{sv})", shortcut.id.c_str(), 2, "description", "s",
                            shortcut.description.c_str(), "preferred_trigger", "s",
                            shortcut.trigger.c_str());
    }
    sd_bus_message_close_container(call);
    sd_bus_message_append(call, "sa{sv}", "", 1, "handle_token", "s", token.c_str());
  };
  // GNOME 48 always answers with a failure code, so only the bound shortcuts count.
  request("BindShortcuts", fill, [this](std::uint32_t /*code*/, sd_bus_message* results) {
    visitDictionary(results, [&](const std::string& key) {
      if (key != "shortcuts") return false;
      sd_bus_message_enter_container(results, SD_BUS_TYPE_VARIANT, "a(sa{sv})");
      takeShortcuts(results);
      sd_bus_message_exit_container(results);
      return true;
    });
    if (triggers_.empty())
      return finish(Answer::kRefused, "the user or the desktop did not allow it");
    finish(Answer::kBound);
  });
}

/// Calls a method that answers with a signal. `fill` adds the arguments, including the token of
/// this request.
void PortalShortcuts::request(const char* method, const std::function<void(sd_bus_message*)>& fill,
                              Response response) {
  auto call = bus_.newCall(kShortcuts, method);
  if (call) fill(call.get());
  pending_ = requestPath(bus_.uniqueName(), "seldial" + std::to_string(requests_++));
  // Before the call, because the answer may arrive before the reply.
  response_ = bus_.onSignal(portal("org.freedesktop.portal.Request", pending_), "Response",
                            [this, response = std::move(response)](sd_bus_message* signal) {
                              std::uint32_t code = 0;
                              if (sd_bus_message_read(signal, "u", &code) <= 0) return;
                              pending_.clear();
                              response(code, signal);
                            });
  if (!bus_.call(std::move(call))) finish(Answer::kRefused, bus_.error());
}

void PortalShortcuts::listen() {
  const auto use = [this](sd_bus_message* signal, const auto& handle) {
    const char* session = nullptr;
    const char* id = nullptr;
    std::uint64_t time = 0;
    const bool ours =
        sd_bus_message_read(signal, "ost", &session, &id, &time) > 0 && session == session_;
    if (ours) handle(id, time);
  };
  signals_.push_back(bus_.onSignal(kShortcuts, "Activated", [this, use](sd_bus_message* signal) {
    use(signal, handlers_.activated);
  }));
  signals_.push_back(bus_.onSignal(kShortcuts, "Deactivated", [this, use](sd_bus_message* signal) {
    use(signal, [this](const char* id, std::uint64_t /*time*/) { handlers_.deactivated(id); });
  }));
  signals_.push_back(bus_.onSignal(kShortcuts, "ShortcutsChanged", [this](sd_bus_message* signal) {
    const char* session = nullptr;
    if (sd_bus_message_read(signal, "o", &session) <= 0 || session != session_) return;
    takeShortcuts(signal);
    finish(Answer::kBound);
  }));
  signals_.push_back(bus_.onSignal(portal("org.freedesktop.portal.Session", session_), "Closed",
                                   [this](sd_bus_message* /*signal*/) {
                                     session_.clear();
                                     triggers_.clear();
                                     finish(Answer::kRefused, "the desktop has revoked it");
                                   }));
}

void PortalShortcuts::takeShortcuts(sd_bus_message* results) {
  triggers_ = readTriggers(results);
}

void PortalShortcuts::finish(Answer answer, std::string error) {
  answer_ = answer;
  error_ = std::move(error);
  if (!binding_) handlers_.changed(answer);
}

/// A restarted portal does not know the session.
void PortalShortcuts::portalChanged(bool there) {
  if (wanted_.empty() || binding_) return;
  // Its implementation still does: the keys would stay bound to that session and never fire.
  if (!session_.empty() && bus_.hasOwner(kImplementation)) {
    bus_.call({kImplementation, session_, "org.freedesktop.impl.portal.Session"}, "Close", "");
  }
  forgetSession();
  if (there) return start();
  finish(Answer::kRefused, "the portal has ended");
}

/// The shortcuts end when the implementation ends, which the portal does not report. A new request
/// starts the implementation again, and is repeated once it is back if it was refused meanwhile.
void PortalShortcuts::implementationChanged(bool there) {
  if (wanted_.empty() || binding_) return;
  if (answer_ != (there ? Answer::kRefused : Answer::kBound)) return;
  forgetSession();
  start();
}

void PortalShortcuts::forgetSession() {
  session_.clear();
  pending_.clear();
  triggers_.clear();
  signals_.clear();
  response_.reset();
}

}  // namespace seldial::platform::wayland
