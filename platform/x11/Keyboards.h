// The keyboards of the X server: the master keyboard that applications see, the XTEST keyboard on
// which programs type, and the physical keyboards. Their maps, the keys that are down, and recorded
// key events.
#pragma once

#include <xcb/xinput.h>

#include <array>
#include <bitset>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "platform/Keyboard.h"
#include "platform/VirtualKeys.h"
#include "platform/x11/Connection.h"
#include "platform/x11/EventPump.h"

namespace seldial::platform::x11 {

/// A set of keys, by X key code.
using KeySet = std::bitset<256>;

/// Bits of the server's modifier state; 0 for a modifier without a key.
struct ModifierMasks {
  std::array<std::uint8_t, kModifiers.size()> bits{};  ///< by ModifierIndex
  std::uint8_t locks = 0;                              ///< Caps Lock, Num Lock and Scroll Lock

  /// The ModifierFlag bits for a modifier state, without Caps Lock.
  [[nodiscard]] std::uint64_t flagsFor(unsigned state) const;

  /// The modifier state for HotKeyModifier bits; nothing if there is no key for one of them. Caps
  /// Lock is ignored.
  [[nodiscard]] std::optional<std::uint8_t> stateFor(std::uint32_t hotKeyModifiers) const;

  bool operator==(const ModifierMasks&) const = default;
};

/// The keys of one keyboard.
struct KeyboardMap {
  ModifierMasks masks;
  std::array<KeySet, 8> modifierKeys;  ///< the keys of each modifier, by bit of the state
  KeySet modifiers;                    ///< the keys of all modifiers
  KeySet heldModifiers;                ///< those of `modifiers` that do not lock or latch
  xcb_keycode_t control = 0;           ///< the key to press for Control; 0 when there is none
  xcb_keycode_t insert = 0;            ///< the key to press for Insert; 0 when there is none
  xcb_keycode_t copy = 0;              ///< the key to press for Copy; 0 when there is none
};

/// Requests the map of one keyboard from the server, on construction; several requests can be
/// pending.
class KeyboardMapRequest {
 public:
  KeyboardMapRequest(xcb_connection_t* xcb, xcb_input_device_id_t keyboard);

  /// Waits for the replies; call it once. Nothing if the keyboard or the server is gone.
  [[nodiscard]] std::optional<KeyboardMap> map() const;

 private:
  xcb_connection_t* xcb_;
  std::uint8_t firstKey_;
  xcb_input_get_device_key_mapping_cookie_t symbols_;
  xcb_input_get_device_modifier_mapping_cookie_t modifiers_;
};

/// Keys that are down. The server keeps them for each keyboard separately, so synthetic keys do not
/// hide the user's.
struct KeysDown {
  KeySet physical;  ///< on any physical keyboard
  KeySet typed;     ///< on the XTEST keyboard
};

/// Sends nothing to the server before the first load(). Main thread only.
class Keyboards final : public EventHandler {
 public:
  Keyboards(Connection& connection, EventPump& pump);

  /// Reads the keyboards on the first call; from then on the server's change events keep them
  /// current. False when the server does not answer or has no XTEST keyboard.
  bool load();

  /// Sets the function to call when the modifiers of the master keyboard have changed.
  void setModifierChangeHandler(std::function<void()> changed) { changed_ = std::move(changed); }

  /// The map of the master keyboard, which is that of the keyboard that was used last.
  [[nodiscard]] const KeyboardMap& map() const { return map_; }
  /// The map of the XTEST keyboard. Its layout may differ from the user's.
  [[nodiscard]] const KeyboardMap& typingMap() const { return typingMap_; }

  /// Whether an input event with this source comes from a physical keyboard.
  [[nodiscard]] bool isPhysical(xcb_input_device_id_t source) const { return source != typing_; }

  /// The keys that are down now. One round trip.
  [[nodiscard]] KeysDown down() const;
  /// The keys that are down on the XTEST keyboard, requested over `xcb`, a connection of the
  /// caller. Empty if the server at its other end does not answer or has no such keyboard.
  [[nodiscard]] KeySet typedDown(xcb_connection_t* xcb) const;

  /// Presses or releases a key of the XTEST keyboard; sent with the next flush.
  void type(xcb_keycode_t key, bool down);

  bool handle(const xcb_generic_event_t& event) override;
  void idle() override;

 private:
  void selectEvents();
  void selectMapEvents(xcb_input_device_id_t keyboard);
  bool readDevices();
  bool readMaps();

  Connection& connection_;
  std::function<void()> changed_ = [] {};
  bool loaded_ = false;
  bool devicesStale_ = true;
  bool mapsStale_ = true;
  xcb_input_device_id_t master_ = 0;
  xcb_input_device_id_t typing_ = 0;
  std::vector<xcb_input_device_id_t> physical_;
  KeyboardMap map_;
  KeyboardMap typingMap_;
};

/// Translates the key events of a toolkit's window to virtual keys. Tracks the held keys from the
/// events alone: the server's state cannot be used, because it is ahead of events that have not
/// been read yet. Main thread only.
class RecordedKeys final : public RecordingKeyboard {
 public:
  explicit RecordedKeys(Keyboards& keyboards) : keyboards_(keyboards) {}

  void begin() override;
  std::optional<KeyEvent> read(std::uint32_t key, std::uint32_t state, bool pressed) override;

 private:
  [[nodiscard]] unsigned modifiersOf(std::uint32_t key) const;
  [[nodiscard]] unsigned modifiersOfHeldKeys() const;
  [[nodiscard]] unsigned stateAfter(unsigned state, unsigned modifiers, bool pressed) const;
  [[nodiscard]] std::uint64_t flagsFor(unsigned state) const;

  Keyboards& keyboards_;
  KeySet held_;
};

}  // namespace seldial::platform::x11
