// A keyboard of our own on the user's seat, to type the copy keystroke with.
//
// A compositor keeps the modifiers of each keyboard apart, so what the user holds is no part of
// what is typed, and nothing that is typed stays down.
#pragma once

#include <xkbcommon/xkbcommon.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/wayland/Display.h"

struct zwp_virtual_keyboard_v1;

namespace seldial::platform::wayland {

/// A keymap as compositors pass it: a text in a file.
class KeymapFile {
 public:
  KeymapFile() = default;
  /// Takes over the descriptor.
  KeymapFile(int file, std::uint32_t size) : file_(file), size_(size) {}
  ~KeymapFile();
  KeymapFile(KeymapFile&& other) noexcept;
  KeymapFile& operator=(KeymapFile&& other) noexcept;

  /// The keymap of a system where nobody has set another. Nothing when there is none.
  static KeymapFile ofSystem();

  [[nodiscard]] explicit operator bool() const { return file_ != -1; }
  [[nodiscard]] int file() const { return file_; }
  [[nodiscard]] std::uint32_t size() const { return size_; }
  /// The keymap; null when the file does not hold one.
  [[nodiscard]] std::shared_ptr<xkb_keymap> read() const;
  [[nodiscard]] bool equals(const KeymapFile& other) const;

 private:
  int file_ = -1;
  std::uint32_t size_ = 0;  ///< in bytes, with the zero at the end of the text
};

/// Main thread only.
class VirtualKeyboard {
 public:
  /// How to make an application copy its selection.
  enum class Chord {
    kControlInsert,  ///< copies in windows, but may be typed into a terminal
    kCopyKey,        ///< XF86Copy; copies in some programs and means nothing to the others
  };

  /// The display must offer a seat and virtual keyboards, and outlive this object. Call
  /// display.synchronise() before typing.
  explicit VirtualKeyboard(Display& display);
  ~VirtualKeyboard();
  VirtualKeyboard(const VirtualKeyboard&) = delete;
  VirtualKeyboard& operator=(const VirtualKeyboard&) = delete;

  /// Gives the keyboard the keymap of the seat, so that applications see no other layout. False
  /// when there is none that can be used.
  bool useKeymapOfSeat();

  /// Types a chord into the focused window. Returns before the application has acted. False, with
  /// nothing typed, when the keymap of the seat has no such keys.
  bool type(Chord chord);

  /// Tells of names of key symbols whether some layout of the seat's keymap has them on this key,
  /// an X key code.
  [[nodiscard]] std::function<bool(const std::string& name)> symbolsOf(std::uint32_t key) const;

  // Called by libwayland.
  void capabilitiesChanged(std::uint32_t capabilities);
  void keymapChanged(std::uint32_t format, int file, std::uint32_t size);

 private:
  /// The keys of the uploaded keymap, as evdev numbers them, and the bit of Control.
  struct Keys {
    std::optional<std::uint32_t> control;
    std::optional<std::uint32_t> insert;
    std::optional<std::uint32_t> copy;
    std::uint32_t controlBit = 0;
  };

  void press(std::uint32_t key);

  Display& display_;
  Owned<wl_keyboard> seatKeyboard_;  ///< tells the keymap of the seat
  Owned<zwp_virtual_keyboard_v1> keyboard_;
  KeymapFile seatKeymap_;
  KeymapFile uploaded_;
  Keys keys_;
};

}  // namespace seldial::platform::wayland
