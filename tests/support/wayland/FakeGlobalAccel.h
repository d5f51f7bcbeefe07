// A double of Plasma's service for global shortcuts.
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "tests/support/wayland/SessionBus.h"

namespace seldial::tests {

/// Any thread.
class FakeGlobalAccel {
 public:
  using Actions = std::map<std::string, std::vector<int>>;  ///< actions and their keys, as Qt codes

  explicit FakeGlobalAccel(const SessionBus& bus);

  /// Makes another program hold this key.
  void take(int key);
  /// Adds an action that a killed program has left behind.
  void leave(const std::string& action, const std::vector<int>& keys);

  /// The actions of the component "seldial".
  [[nodiscard]] Actions actions() const;

  /// Simulates the user pressing, or releasing, a key with modifiers. Notifies the action that
  /// holds it, if any.
  void press(int key) { tell(key, "globalShortcutPressed"); }
  void release(int key) { tell(key, "globalShortcutReleased"); }

 private:
  int answer(sd_bus_message* call);
  int answerSet(sd_bus_message* call);
  int answerNames(sd_bus_message* call) const;
  void tell(int key, const char* signal);
  [[nodiscard]] bool isFree(int key, const std::string& action) const;

  mutable std::mutex mutex_;  ///< guards the members below
  Actions actions_;
  std::set<int> taken_;
  BusService service_;
};

}  // namespace seldial::tests
