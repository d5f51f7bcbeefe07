// The hot key of a session whose compositor gives programs none: the user binds a key to
// "seldial-uc press" in the compositor's configuration, and each run of that is one use.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/HotKeyEvents.h"
#include "platform/linux/MainLoop.h"
#include "platform/wayland/HotKeyClaims.h"

namespace seldial::platform::wayland {

/// Main thread only. Uses reach the handler through the main queue.
class PressHotKeys final : public HotKeyEvents, public linux_port::EventSource {
 public:
  /// `session` names the compositor to people.
  PressHotKeys(linux_port::MainLoop& loop, std::string session);
  ~PressHotKeys() override;
  PressHotKeys(const PressHotKeys&) = delete;
  PressHotKeys& operator=(const PressHotKeys&) = delete;

  void installReleasedHandler(ReleasedHandler handler) override { *handler_ = std::move(handler); }

  /// Accepts every key that has a virtual key code, and says on standard error what the user has to
  /// bind. Refuses while another program of this kind waits for presses.
  std::optional<HotKeyRef> registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                          HotKeyID hotKeyID) override;
  void unregisterHotKey(HotKeyRef ref) override;
  [[nodiscard]] bool canBeHotKey(std::uint32_t keyCode, std::uint32_t modifiers) override;

  /// Waits for presses no longer; the program ends.
  void unregisterAll();

  [[nodiscard]] int descriptor() const override { return socket_; }
  void readable() override;

 private:
  struct Registration {
    HotKeyRef ref = 0;
    HotKeyID hotKeyID;
  };

  bool listen();

  linux_port::MainLoop& loop_;
  const std::string session_;
  const std::shared_ptr<ReleasedHandler> handler_ = std::make_shared<ReleasedHandler>();
  std::optional<HotKeyClaim> claim_;  ///< of the socket
  int socket_ = -1;
  std::vector<Registration> registrations_;  ///< a press is a use of the last one
  HotKeyRef lastRef_ = 0;
};

}  // namespace seldial::platform::wayland
