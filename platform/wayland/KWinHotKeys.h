// Hot keys under KWin, as global shortcuts of Plasma.
//
// A shortcut is not a place on the keyboard but what the user's layout puts there. So a hot key is
// every code that its place has in the user's layouts, and gets other codes when those change.
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
  std::vector<int> codes;       ///< empty where the layouts have none, or another program has one
  HotKeyClaim claim;

  [[nodiscard]] std::string action() const;
};

/// Main thread only.
class KWinHotKeys final : public linux_port::RegisteredHotKeys<KWinHotKey> {
 public:
  /// All of them must outlive this object. Combinations that a killed program left taken are given
  /// back at once.
  KWinHotKeys(linux_port::MainLoop& loop, GlobalAccel& shortcuts, HotKeyClaims& claims,
              ModifierProbe& probe, const SeatKeymap& keymap);
  /// Gives the combinations back.
  ~KWinHotKeys() override;
  KWinHotKeys(const KWinHotKeys&) = delete;
  KWinHotKeys& operator=(const KWinHotKeys&) = delete;

  /// Refuses keys that canBeHotKey() refuses or that have no code in any layout, and, with a line
  /// on standard error, what another program has.
  std::optional<HotKeyRef> registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                          HotKeyID hotKeyID) override;
  void unregisterHotKey(HotKeyRef ref) override;
  /// False for keys of the keypad too: KWin takes them for the others with the same meaning.
  [[nodiscard]] bool canBeHotKey(std::uint32_t keyCode, std::uint32_t modifiers) override;

  /// Gives every combination back; the program ends.
  void unregisterAll();

  /// For the handler of GlobalAccel.
  void released(const std::string& action);
  /// For the handler of SeatKeymap.
  void keymapChanged();

 private:
  bool set(KWinHotKey& hotKey);

  GlobalAccel& shortcuts_;
  HotKeyClaims& claims_;
  ModifierProbe& probe_;
  const SeatKeymap& keymap_;
};

}  // namespace seldial::platform::wayland
