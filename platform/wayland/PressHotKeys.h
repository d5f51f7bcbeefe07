// The hot key in sessions whose compositor has no hot keys for programs: the user binds a key to
// "seldial-uc press" in the configuration of the compositor, and each run of the command is one
// use.
#pragma once

#include <optional>
#include <string>

#include "platform/linux/MainLoop.h"
#include "platform/linux/RegisteredHotKeys.h"
#include "platform/wayland/HotKeyClaims.h"

namespace seldial::platform::wayland {

/// The registration needs no details.
struct PressHotKey {};

/// A press is a use of the last registration. Main thread only.
class PressHotKeys final : public linux_port::RegisteredHotKeys<PressHotKey>,
                           public linux_port::EventSource {
 public:
  /// `session` is the name of the compositor for messages.
  PressHotKeys(linux_port::MainLoop& loop, std::string session);
  ~PressHotKeys() override;
  PressHotKeys(const PressHotKeys&) = delete;
  PressHotKeys& operator=(const PressHotKeys&) = delete;

  /// Accepts every key that has a virtual key code, and writes to standard error what the user has
  /// to bind. Refuses while another Seldial waits for presses.
  std::optional<HotKeyRef> registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                          HotKeyID hotKeyID) override;
  void unregisterHotKey(HotKeyRef ref) override;
  [[nodiscard]] bool canBeHotKey(std::uint32_t keyCode, std::uint32_t modifiers) override;

  /// Stops waiting for presses, at the end of the program.
  void unregisterAll();

  [[nodiscard]] int descriptor() const override { return socket_; }
  void readable() override;

 private:
  bool listen();

  linux_port::MainLoop& loop_;
  const std::string session_;
  std::optional<HotKeyClaim> claim_;  ///< of the socket
  int socket_ = -1;
};

}  // namespace seldial::platform::wayland
