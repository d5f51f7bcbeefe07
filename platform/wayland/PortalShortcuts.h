// The desktop portal's global shortcuts: hot keys that the user allows, and may change, in a dialog
// of the desktop. The desktop keeps what the user has chosen, so the dialog comes once.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/wayland/Bus.h"

namespace seldial::platform::wayland {

struct PortalShortcut {
  std::string id;
  std::string description;  ///< what it does, for the user
  std::string trigger;      ///< a wish, as the freedesktop.org shortcuts specification spells keys
};

/// One set of shortcuts at a time. Main thread only.
class PortalShortcuts {
 public:
  enum class Answer {
    kBound,
    kAsked,    ///< the user is being asked
    kRefused,  ///< error() says why
  };

  /// What happens to the shortcuts. Called from the loop, also while that blocks; may not call
  /// bind() or release().
  struct Handlers {
    /// `time` is the compositor's, in milliseconds.
    std::function<void(const std::string& id, std::uint64_t time)> activated;
    std::function<void(const std::string& id)> deactivated;
    /// The user has answered, the portal came back, or the user changed a key: bound or refused.
    std::function<void(Answer answer)> changed;
  };

  /// The name of the installed desktop file by which the portal knows this program.
  static constexpr const char* kApplicationId = "org.seldial.Seldial";

  PortalShortcuts(Bus& bus, Handlers handlers);
  ~PortalShortcuts();
  PortalShortcuts(const PortalShortcuts&) = delete;
  PortalShortcuts& operator=(const PortalShortcuts&) = delete;

  /// Whether the portal is there and has such shortcuts. Starts it if it is installed.
  static bool isOffered(Bus& bus);

  /// Asks for exactly these shortcuts, in place of those before. Waits one second for the answer
  /// of a desktop that needs not ask the user.
  Answer bind(std::vector<PortalShortcut> shortcuts);

  /// Gives all of them back. What the user has allowed stays stored.
  void release();

  /// The key of a shortcut in the desktop's own words; empty when it has none.
  [[nodiscard]] std::string triggerOf(const std::string& id) const;

  /// Whether the shortcuts are there.
  [[nodiscard]] bool isBound() const { return answer_ == Answer::kBound; }

  /// Why the answer was kRefused, for people.
  [[nodiscard]] const std::string& error() const { return error_; }

 private:
  using Response = std::function<void(std::uint32_t code, sd_bus_message* results)>;

  void start();
  bool registerApplication();
  void createSession();
  void bindShortcuts();
  void takeShortcuts(sd_bus_message* results);
  void request(const char* method, const std::function<void(sd_bus_message*)>& fill,
               Response response);
  void listen();
  void finish(Answer answer, std::string error = {});
  void portalChanged(bool there);

  Bus& bus_;
  const Handlers handlers_;
  std::vector<PortalShortcut> wanted_;
  std::map<std::string, std::string> triggers_;  ///< of what is bound, by id
  Answer answer_ = Answer::kRefused;
  std::string error_;
  bool binding_ = false;  ///< bind() waits, and tells the answer itself
  std::string session_;   ///< its path; empty while there is none
  unsigned requests_ = 0;
  BusSlot owner_;
  std::string pending_;  ///< the path of the request that has no answer yet
  BusSlot response_;
  std::vector<BusSlot> signals_;
};

}  // namespace seldial::platform::wayland
