// What GNOME has on the session bus for hot keys and copies: the desktop portal, and Mutter's
// remote desktop.
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
  /// What the user says to shortcuts.
  enum class Consent { kGiven, kRefused, kAsked };

  explicit FakeGnome(const SessionBus& bus);

  void setConsent(Consent consent);
  /// The user answers the dialog of a request that is being asked.
  void answer(bool allow);
  /// The user gives a shortcut another key, also later on.
  void setTrigger(const std::string& id, const std::string& description);
  /// The portal refuses the application, for want of its desktop file.
  void forgetApplication();
  /// GNOME takes the shortcuts back.
  void closePortalSession();
  /// What is bound, by id, with the trigger that was asked for.
  [[nodiscard]] std::map<std::string, std::string> bound() const;

  // The user's keys. A shortcut is not released for the portal once a modifier has gone up.
  void holdModifiers(bool held);
  void press(const std::string& id);
  void release(const std::string& id);
  /// The portal tells that no modifier was down, so long after the last press or release.
  void answerModifiers(int milliseconds = 1);

  /// What Ctrl+Insert copies; nothing is selected at first.
  void select(std::optional<std::string> text);
  /// The type that the window offers.
  void setCopiedType(const std::string& type);

  /// What has been typed: the key that asks for the modifiers is left out.
  [[nodiscard]] std::vector<std::string> typed() const;
  /// How often the modifiers have been asked for.
  [[nodiscard]] std::size_t questions() const;
  [[nodiscard]] bool isRemoteSessionOpen() const;
  /// Mutter opens no session any more.
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
