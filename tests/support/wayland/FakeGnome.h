// A double of GNOME's services on the session bus for hot keys and copying: the desktop portal, and
// Mutter's remote desktop interface.
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
  /// The type that the window offers.
  void setCopiedType(const std::string& type);

  /// The typed keys, without the key that tests for modifiers.
  [[nodiscard]] std::vector<std::string> typed() const;
  /// How often the key that tests for modifiers was typed.
  [[nodiscard]] std::size_t questions() const;
  [[nodiscard]] bool isRemoteSessionOpen() const;
  /// Makes Mutter refuse further sessions.
  void refuseRemoteSessions();

 private:
  int answerPortal(sd_bus_message* call);
  int answerMutter(sd_bus_message* call);
  int createPortalSession(sd_bus_message* call);
  int bindShortcuts(sd_bus_message* call);
  int keyNotified(sd_bus_message* call);
  int readSelection(sd_bus_message* call);
  void respond(sd_bus* bus, bool allow);
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
  std::map<std::string, std::string> bound_;
  std::map<std::string, std::string> chosen_;
  std::optional<std::string> selection_;
  std::string copiedType_ = "text/plain;charset=utf-8";
  std::vector<std::string> typed_;

  BusService portal_;
  BusService mutter_;
};

}  // namespace seldial::tests
