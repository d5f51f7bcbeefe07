// A double of GNOME's services on the session bus for hot keys and copying: the desktop portal,
// Mutter's remote desktop interface, and GNOME Shell's screen lock and list of extensions.
#pragma once

#include <xkbcommon/xkbcommon.h>

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/wayland/SessionBus.h"

namespace seldial::tests {

/// A GNOME with one user, one window, and one client. All functions may be called on any thread.
class FakeGnome {
 public:
  /// The user's answer to a request for shortcuts.
  enum class Consent { kGiven, kRefused, kAsked };

  explicit FakeGnome(const SessionBus& bus);

  void setConsent(Consent consent);
  /// Answers the open dialog as the user.
  void answer(bool allow);
  /// Assigns another key to a shortcut, as the user can do at any time.
  void setTrigger(const std::string& id, const std::string& description);
  /// Makes the portal refuse the application, as without its .desktop file.
  void forgetApplication();
  /// Closes the session of the shortcuts.
  void closePortalSession();
  /// Ends the portal and starts it again. As in GNOME, its implementation keeps the keys of its
  /// sessions, and later ones do not get them.
  void restartPortal();
  /// Ends the portal's implementation, with all shortcuts, and starts it again.
  void restartImplementation();
  /// How often shortcuts were requested.
  [[nodiscard]] std::size_t bindings() const;
  /// The bound shortcuts, by id, with the requested triggers.
  [[nodiscard]] std::map<std::string, std::string> bound() const;

  // The user's keys. As in GNOME, the portal reports no release of a shortcut once a modifier has
  // been released.
  void holdModifiers(bool held);
  void press(const std::string& id);
  void release(const std::string& id);
  /// Makes the portal report that no modifier is down, this long after the last press or release.
  void answerModifiers(int milliseconds = 1);

  /// Selects the text that Ctrl+Insert copies; at first nothing is selected.
  void select(std::optional<std::string> text);
  /// The types that the window offers; the last one is that of the text.
  void setCopiedTypes(std::vector<std::string> types);

  /// What a clipboard manager puts on the clipboard, and when.
  struct Manager {
    enum class Acts { kNever, kOnClearing, kBeforeTransfer, kAfterTransfer } acts = Acts::kNever;
    std::vector<std::string> types;
    std::string text;
    int times = 1000;   ///< how often
    bool late = false;  ///< from the second time on, only with the next key or request to the Shell
  };
  void setManager(Manager manager);
  void lockScreen();
  /// Makes GNOME Shell list an extension, which is enabled or not.
  void listExtension(bool enabled);

  /// The typed keys, without the key that tests for modifiers.
  [[nodiscard]] std::vector<std::string> typed() const;
  /// How often the key that tests for modifiers was typed.
  [[nodiscard]] std::size_t questions() const;
  [[nodiscard]] bool isRemoteSessionOpen() const;
  /// Makes Mutter refuse further sessions.
  void refuseRemoteSessions();

 private:
  static bool isCall(sd_bus_message* call, const char* interface, const char* method) {
    return sd_bus_message_is_method_call(call, interface, method) > 0;
  }
  void startPortal();
  void startImplementation();
  int answerPortal(sd_bus_message* call);
  int answerImplementation(sd_bus_message* call);
  int answerMutter(sd_bus_message* call);
  int createPortalSession(sd_bus_message* call);
  int bindShortcuts(sd_bus_message* call);
  int keyNotified(sd_bus_message* call);
  int clearClipboard(sd_bus_message* call);
  int readSelection(sd_bus_message* call);
  int answerShell(sd_bus_message* call);
  void takeClipboard(sd_bus* bus, const std::vector<std::string>& types, const std::string& text);
  void letManagerAct(sd_bus* bus, Manager::Acts occasion);
  void letLateManagerAct(sd_bus* bus);
  void respond(sd_bus* bus, bool allow);
  void unbind();
  void tell(const char* signal, const std::string& id);

  mutable std::mutex mutex_;  ///< guards everything below but the services
  Consent consent_ = Consent::kGiven;
  bool known_ = true;
  bool remoteRefused_ = false;
  bool remoteOpen_ = false;
  bool modifiersHeld_ = false;
  bool controlDown_ = false;
  std::uint64_t time_ = 1000;
  std::size_t questions_ = 0;
  std::string request_;
  std::string session_;
  std::string grabbing_;  ///< the session that has the keys
  std::size_t bindings_ = 0;
  std::map<std::string, std::string> bound_;
  std::map<std::string, std::string> chosen_;
  std::optional<std::string> selection_;
  std::vector<std::string> copiedTypes_{"text/html", "text/plain;charset=utf-8"};
  std::vector<std::string> clipboardTypes_;
  std::string clipboard_;
  Manager manager_;
  bool managerIsLate_ = false;
  bool managerWaits_ = false;
  std::optional<bool> extension_;
  std::vector<std::string> typed_;

  const SessionBus& bus_;
  std::optional<BusService> portal_;
  std::optional<BusService> implementation_;
  BusService mutter_;
  BusService shell_;
};

}  // namespace seldial::tests
