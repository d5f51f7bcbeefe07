#include "tests/support/wayland/FakeGlobalAccel.h"

#include <algorithm>
#include <cstring>

namespace seldial::tests {
namespace {

constexpr const char* kComponentPath = "/component/seldial";
constexpr const char* kComponentInterface = "org.kde.kglobalaccel.Component";

bool isCall(sd_bus_message* call, const char* path, const char* method) {
  return std::strcmp(sd_bus_message_get_path(call), path) == 0 &&
         std::strcmp(sd_bus_message_get_member(call), method) == 0;
}

/// The second of the four texts that name an action.
std::string readAction(sd_bus_message* call) {
  const char* action = "";
  sd_bus_message_enter_container(call, 'a', "s");
  sd_bus_message_read(call, "ssss", nullptr, &action, nullptr, nullptr);
  sd_bus_message_exit_container(call);
  return action;
}

std::vector<int> readKeys(sd_bus_message* call) {
  std::vector<int> keys;
  int key = 0;
  sd_bus_message_enter_container(call, 'a', "(ai)");
  while (sd_bus_message_read(call, "(ai)", 4, &key, nullptr, nullptr, nullptr) > 0) {
    keys.push_back(key);
  }
  sd_bus_message_exit_container(call);
  return keys;
}

}  // namespace

FakeGlobalAccel::FakeGlobalAccel(const SessionBus& bus)
    : service_(bus, "org.kde.kglobalaccel", [this](sd_bus_message* call) { return answer(call); }) {
}

void FakeGlobalAccel::take(int key) {
  const std::lock_guard lock(mutex_);
  taken_.insert(key);
}

void FakeGlobalAccel::leave(const std::string& action, const std::vector<int>& keys) {
  const std::lock_guard lock(mutex_);
  actions_[action] = keys;
}

FakeGlobalAccel::Actions FakeGlobalAccel::actions() const {
  const std::lock_guard lock(mutex_);
  return actions_;
}

int FakeGlobalAccel::answer(sd_bus_message* call) {
  const std::lock_guard lock(mutex_);
  if (isCall(call, kComponentPath, "shortcutNames")) return answerNames(call);
  if (isCall(call, "/kglobalaccel", "setShortcutKeys")) return answerSet(call);
  if (isCall(call, "/kglobalaccel", "doRegister")) {
    actions_.try_emplace(readAction(call));
    return sd_bus_reply_method_return(call, "");
  }
  if (!isCall(call, "/kglobalaccel", "unregister")) return 0;
  const char* action = "";
  sd_bus_message_read(call, "ss", nullptr, &action);
  return sd_bus_reply_method_return(call, "b", static_cast<int>(actions_.erase(action) > 0));
}

/// Grants the keys that no other action holds, like the service.
int FakeGlobalAccel::answerSet(sd_bus_message* call) {
  const std::string action = readAction(call);
  auto keys = readKeys(call);
  std::erase_if(keys, [&](int key) { return !isFree(key, action); });
  actions_[action] = keys;
  sd_bus_message* reply = nullptr;
  sd_bus_message_new_method_return(call, &reply);
  sd_bus_message_open_container(reply, 'a', "(ai)");
  for (const int key : keys) sd_bus_message_append(reply, "(ai)", 4, key, 0, 0, 0);
  sd_bus_message_close_container(reply);
  const int result = sd_bus_send(nullptr, reply, nullptr);
  sd_bus_message_unref(reply);
  return result < 0 ? result : 1;
}

int FakeGlobalAccel::answerNames(sd_bus_message* call) const {
  sd_bus_message* reply = nullptr;
  sd_bus_message_new_method_return(call, &reply);
  sd_bus_message_open_container(reply, 'a', "s");
  for (const auto& [action, keys] : actions_) sd_bus_message_append(reply, "s", action.c_str());
  sd_bus_message_close_container(reply);
  const int result = sd_bus_send(nullptr, reply, nullptr);
  sd_bus_message_unref(reply);
  return result < 0 ? result : 1;
}

bool FakeGlobalAccel::isFree(int key, const std::string& action) const {
  return taken_.count(key) == 0 &&
         std::none_of(actions_.begin(), actions_.end(), [&](const auto& other) {
           const auto& keys = other.second;
           return other.first != action && std::find(keys.begin(), keys.end(), key) != keys.end();
         });
}

void FakeGlobalAccel::tell(int key, const char* signal) {
  for (const auto& [action, keys] : actions()) {
    if (std::find(keys.begin(), keys.end(), key) == keys.end()) continue;
    service_.emit(kComponentPath, kComponentInterface, signal, "ssx", "seldial", action.c_str(),
                  std::int64_t{0});
  }
}

}  // namespace seldial::tests
