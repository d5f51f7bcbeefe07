// Hot keys under KWin, as global shortcuts of Plasma.
//
// A shortcut is not a place on the keyboard but what the user's layout puts there. So a hot key is
// every code that its place has in the user's layouts, and gets other codes when those change.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/HotKeyEvents.h"
#include "platform/wayland/GlobalAccel.h"
#include "platform/wayland/HotKeyClaims.h"
#include "platform/wayland/ModifierProbe.h"
#include "platform/wayland/SeatKeymap.h"

namespace seldial::platform::wayland {

/// Main thread only. Releases reach the handler through the main queue.
class KWinHotKeys final : public HotKeyEvents {
 public:
  /// All of them must outlive this object. Combinations that a killed program left taken are given
  /// back at once.
  KWinHotKeys(linux_port::MainLoop& loop, GlobalAccel& shortcuts, HotKeyClaims& claims,
              ModifierProbe& probe, const SeatKeymap& keymap);
  /// Gives the combinations back.
  ~KWinHotKeys() override;
  KWinHotKeys(const KWinHotKeys&) = delete;
  KWinHotKeys& operator=(const KWinHotKeys&) = delete;

  void installReleasedHandler(ReleasedHandler handler) override { *handler_ = std::move(handler); }

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
  struct Registration {
    HotKeyRef ref = 0;
    HotKeyID hotKeyID;
    std::uint32_t key = 0;        ///< an X key code
    std::uint32_t modifiers = 0;  ///< HotKeyModifier bits
    std::vector<int> codes;       ///< empty where the layouts have none, or another program has one
    HotKeyClaim claim;

    [[nodiscard]] std::string action() const;
  };

  bool set(Registration& registration);

  linux_port::MainLoop& loop_;
  GlobalAccel& shortcuts_;
  HotKeyClaims& claims_;
  ModifierProbe& probe_;
  const SeatKeymap& keymap_;
  const std::shared_ptr<ReleasedHandler> handler_ = std::make_shared<ReleasedHandler>();
  std::vector<Registration> registrations_;
  HotKeyRef lastRef_ = 0;
};

}  // namespace seldial::platform::wayland
