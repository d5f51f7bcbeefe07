// The global shortcuts of the desktop portal: hot keys that the user allows, and may change, in a
// dialog of the desktop. The desktop remembers the user's choice, so the dialog appears once.
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
  std::string trigger;  ///< the preferred trigger, in the notation of the freedesktop.org shortcuts
                        ///< specification
};

/// One set of shortcuts at a time. Main thread only.
class PortalShortcuts {
 public:
  enum class Answer {
    kBound,
    kAsked,    ///< the user is being asked
    kRefused,  ///< error() says why
  };

  /// The events of the shortcuts. Called from the loop, even while it blocks; must not call bind()
  /// or release().
  struct Handlers {
    /// `time` is the compositor's time, in milliseconds.
    std::function<void(const std::string& id, std::uint64_t time)> activated;
    std::function<void(const std::string& id)> deactivated;
    /// The user has answered or changed a key, or a part of the portal has restarted. The answer is
    /// bound or refused.
    std::function<void(Answer answer)> changed;
  };

  /// The name of the installed .desktop file by which the portal identifies this program.
  static constexpr const char* kApplicationId = "org.seldial.Seldial";

  PortalShortcuts(Bus& bus, Handlers handlers);
  ~PortalShortcuts();
  PortalShortcuts(const PortalShortcuts&) = delete;
  PortalShortcuts& operator=(const PortalShortcuts&) = delete;

  /// Whether the portal is available and supports global shortcuts. Starts it if it is installed.
  static bool isOffered(Bus& bus);

  /// Requests exactly these shortcuts, which replace the previous ones. Waits one second for the
  /// answer of a desktop that does not need to ask the user.
  Answer bind(std::vector<PortalShortcut> shortcuts);

  /// Releases all shortcuts. The desktop remembers the user's permission.
  void release();

  /// The key of a shortcut, as described by the desktop; empty if it has none.
  [[nodiscard]] std::string triggerOf(const std::string& id) const;

  /// Whether the shortcuts are bound.
  [[nodiscard]] bool isBound() const { return answer_ == Answer::kBound; }

  /// Why the answer was kRefused, as readable text.
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
  void implementationChanged(bool there);
  void forgetSession();

  Bus& bus_;
  const Handlers handlers_;
  std::vector<PortalShortcut> wanted_;
  std::map<std::string, std::string> triggers_;  ///< of the bound shortcuts, by id
  Answer answer_ = Answer::kRefused;
  std::string error_;
  bool binding_ = false;  ///< bind() is waiting, and returns the answer itself
  std::string session_;   ///< its path; empty while there is none
  unsigned requests_ = 0;
  BusSlot owner_;
  BusSlot implementation_;
  std::string pending_;  ///< the path of the pending request
  BusSlot response_;
  std::vector<BusSlot> signals_;
};

}  // namespace seldial::platform::wayland
