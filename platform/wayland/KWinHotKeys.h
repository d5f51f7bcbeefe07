// Hot keys under KWin, as global shortcuts of Plasma.
//
// Plasma identifies a shortcut by the symbol that the user's layout assigns to the key, not by the
// position of the key. So a hot key is registered with every code that its position has in the
// user's layouts, and gets other codes when the layouts change.
#pragma once

#include <string>
#include <vector>

#include "platform/linux/RegisteredHotKeys.h"
#include "platform/wayland/GlobalAccel.h"
#include "platform/wayland/HotKeyClaims.h"
#include "platform/wayland/ModifierProbe.h"
#include "platform/wayland/SeatKeymap.h"

namespace seldial::platform::wayland {

struct KWinHotKey {
  std::uint32_t key = 0;        ///< an X key code
  std::uint32_t modifiers = 0;  ///< HotKeyModifier bits
  std::vector<int> codes;       ///< empty if the layouts have none, or another program holds one
  HotKeyClaim claim;

  [[nodiscard]] std::string action() const;
};

/// Main thread only.
class KWinHotKeys final : public linux_port::RegisteredHotKeys<KWinHotKey> {
 public:
  /// All arguments must outlive this object. The combinations of a killed process are removed at
  /// once.
  KWinHotKeys(linux_port::MainLoop& loop, GlobalAccel& shortcuts, HotKeyClaims& claims,
              ModifierProbe& probe, const SeatKeymap& keymap);
  /// Removes the combinations.
  ~KWinHotKeys() override;
  KWinHotKeys(const KWinHotKeys&) = delete;
  KWinHotKeys& operator=(const KWinHotKeys&) = delete;

  /// Refuses keys that canBeHotKey() refuses or that have no code in any layout, and, with a line
  /// on standard error, combinations that another program holds.
  std::optional<HotKeyRef> registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                          HotKeyID hotKeyID) override;
  void unregisterHotKey(HotKeyRef ref) override;
  /// Also false for keypad keys: KWin does not distinguish them from other keys with the same
  /// symbol.
  [[nodiscard]] bool canBeHotKey(std::uint32_t keyCode, std::uint32_t modifiers) override;

  /// Removes every combination, at the end of the program.
  void unregisterAll();

  /// Called by the handler of GlobalAccel.
  void released(const std::string& action);
  /// Called by the handler of SeatKeymap.
  void keymapChanged();

 private:
  bool set(KWinHotKey& hotKey);

  GlobalAccel& shortcuts_;
  HotKeyClaims& claims_;
  ModifierProbe& probe_;
  const SeatKeymap& keymap_;
};

}  // namespace seldial::platform::wayland
