// Hot keys as bindings of sway, made while it runs.
//
// A hot key is two bindings of a key code, so the key's place counts and not the layout: one for
// the press, which keeps the key from the focused application, and one for the release. Both do
// nothing but send us an event with their command. A reload of the configuration drops them, and
// they work only in the binding mode in which they were made, so they are made again after a reload
// and in each mode that the user enters.
#pragma once

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "platform/linux/RegisteredHotKeys.h"
#include "platform/wayland/HotKeyClaims.h"
#include "platform/wayland/SwayConfig.h"
#include "platform/wayland/SwayIpc.h"

namespace seldial::platform::wayland {

/// What symbols a key, an X key code, has in the user's layouts.
using SymbolsOfKey = std::function<HasSymbol(std::uint32_t key)>;

struct SwayHotKey {
  SwayCombination combination;
  HotKeyClaim claim;
};

/// Main thread only.
class SwayHotKeys final : public linux_port::RegisteredHotKeys<SwayHotKey> {
 public:
  /// `socketPath` is where `commands` leads; `connectionLost` is called once, from the loop.
  /// Combinations that a killed program left bound are given back at once.
  SwayHotKeys(std::unique_ptr<SwayConnection> commands, std::unique_ptr<SwayConnection> events,
              const std::string& socketPath, linux_port::MainLoop& loop, SymbolsOfKey symbolsOfKey,
              std::function<void()> connectionLost);
  /// Gives the combinations back.
  ~SwayHotKeys() override;
  SwayHotKeys(const SwayHotKeys&) = delete;
  SwayHotKeys& operator=(const SwayHotKeys&) = delete;

  /// Refuses keys without a key code, modifier keys, the copy keystroke, and, with a line on
  /// standard error, what sway's configuration or another program of this kind has.
  std::optional<HotKeyRef> registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                          HotKeyID hotKeyID) override;
  void unregisterHotKey(HotKeyRef ref) override;
  [[nodiscard]] bool canBeHotKey(std::uint32_t keyCode, std::uint32_t modifiers) override;

  /// Gives every combination back; the program ends.
  void unregisterAll();

  /// Names of the program that owns the focused window; see FocusedProgram.
  [[nodiscard]] std::vector<std::string> focusedProgram();

 private:
  [[nodiscard]] bool isFree(const SwayCombination& combination);
  bool bind(const Registration& registration);
  void bindAllAgain();
  void unbind(const std::string& combination);
  void handle(SwayEvent event, const std::string& content);
  void released(const std::string& command);
  [[nodiscard]] std::string currentMode();
  [[nodiscard]] std::string answer(SwayRequest request, const char* key);

  const std::unique_ptr<SwayConnection> commands_;
  const SymbolsOfKey symbolsOfKey_;
  HotKeyClaims claims_;
  std::set<std::string> modes_;  ///< in which there may be bindings of ours
  SwayEvents events_;
};

}  // namespace seldial::platform::wayland
