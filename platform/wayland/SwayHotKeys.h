// Hot keys as sway bindings that are added at run time.
//
// A hot key is two bindings of a key code, so that the position of the key counts and not the
// layout: one for the press, which hides the key from the focused application, and one for the
// release. Both only send us an event with their command. Reloading the configuration removes them,
// and they work only in the binding mode in which they were added, so they are added again after a
// reload and in each mode that the user enters.
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

/// Looks up the symbols of a key, an X key code, in the user's layouts.
using SymbolsOfKey = std::function<HasSymbol(std::uint32_t key)>;

struct SwayHotKey {
  SwayCombination combination;
  HotKeyClaim claim;
  std::set<std::string> modes;  ///< the binding modes that have its bindings
};

/// Main thread only.
class SwayHotKeys final : public linux_port::RegisteredHotKeys<SwayHotKey> {
 public:
  /// `socketPath` is the path to which `commands` is connected; `connectionLost` is called once,
  /// from the loop. The bindings of a killed process are removed at once.
  SwayHotKeys(std::unique_ptr<SwayConnection> commands, std::unique_ptr<SwayConnection> events,
              const std::string& socketPath, linux_port::MainLoop& loop, SymbolsOfKey symbolsOfKey,
              std::function<void()> connectionLost);
  /// Removes the bindings.
  ~SwayHotKeys() override;
  SwayHotKeys(const SwayHotKeys&) = delete;
  SwayHotKeys& operator=(const SwayHotKeys&) = delete;

  /// Refuses keys without a key code, modifier keys, the copy keystroke, and, with a line on
  /// standard error, combinations that sway's configuration or another Seldial holds.
  std::optional<HotKeyRef> registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                          HotKeyID hotKeyID) override;
  void unregisterHotKey(HotKeyRef ref) override;
  [[nodiscard]] bool canBeHotKey(std::uint32_t keyCode, std::uint32_t modifiers) override;

  /// Removes every binding, at the end of the program.
  void unregisterAll();

  /// The names of the program that owns the focused window; see FocusedProgram.
  [[nodiscard]] std::vector<std::string> focusedProgram();

 private:
  using Clock = std::chrono::steady_clock;

  [[nodiscard]] bool isFree(const SwayCombination& combination);
  bool bind(Registration& registration, const std::string& mode);
  void bindMissing();
  void unbind(const std::string& combination, const std::set<std::string>& modes);
  bool waitForRelease();
  void handle(SwayEvent event, const std::string& content);
  void used(const std::string& command);
  [[nodiscard]] std::string currentMode();
  [[nodiscard]] std::string answer(SwayRequest request, const char* key);

  linux_port::MainLoop& loop_;
  const std::unique_ptr<SwayConnection> commands_;
  const SymbolsOfKey symbolsOfKey_;
  HotKeyClaims claims_;
  std::optional<Clock::time_point> pressed_;  ///< of a hot key whose release was not reported
  SwayEvents events_;
};

}  // namespace seldial::platform::wayland
