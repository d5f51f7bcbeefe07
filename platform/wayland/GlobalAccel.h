// Plasma's service for global shortcuts, org.kde.kglobalaccel, as one of its components.
//
// A component has actions, and an action has keys. The service keeps both when a program ends
// without giving them back, also over the end of the session.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/wayland/Bus.h"

namespace seldial::platform::wayland {

/// The component of this program. Main thread only.
class GlobalAccel {
 public:
  static constexpr const char* kService = "org.kde.kglobalaccel";

  /// Called when a key of an action is pressed, or released. From the loop, also while it blocks.
  using Handler = std::function<void(const std::string& action)>;

  /// The bus must outlive this object.
  explicit GlobalAccel(Bus& bus) : bus_(bus) {}

  /// Sets the handlers. False when the service does not answer.
  bool listen(Handler pressed, Handler released);

  /// Makes the action and gives it these keys, as Qt codes, in place of those that it had. False
  /// when it does not get all of them, because another action has one; it is removed then. `title`
  /// names it to the user.
  bool set(const std::string& action, const std::string& title, const std::vector<int>& keys);
  void remove(const std::string& action);

  /// The major version of Qt that the service uses, which changed the codes of some keys.
  [[nodiscard]] int qtVersion();

  /// The actions that there are, also those of other programs of this kind.
  [[nodiscard]] std::vector<std::string> actions();

 private:
  Bus& bus_;
  BusSlot pressed_;
  BusSlot released_;
  int qtVersion_ = 0;  ///< 0: not asked yet
};

}  // namespace seldial::platform::wayland
