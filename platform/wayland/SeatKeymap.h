// The keymap of the user's seat: the symbols of its keys in the user's layouts.
#pragma once

#include <xkbcommon/xkbcommon.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/wayland/Display.h"

namespace seldial::platform::wayland {

/// A keymap as compositors pass it: text in a file.
class KeymapFile {
 public:
  KeymapFile() = default;
  /// Takes over the descriptor.
  KeymapFile(int file, std::uint32_t size) : file_(file), size_(size) {}
  ~KeymapFile();
  KeymapFile(KeymapFile&& other) noexcept;
  KeymapFile& operator=(KeymapFile&& other) noexcept;

  /// The default keymap of the system. Nothing if there is none.
  static KeymapFile systemKeymap();

  [[nodiscard]] explicit operator bool() const { return file_ != -1; }
  [[nodiscard]] int file() const { return file_; }
  [[nodiscard]] std::uint32_t size() const { return size_; }
  /// The keymap; null if the file does not contain one.
  [[nodiscard]] std::shared_ptr<xkb_keymap> read() const;
  [[nodiscard]] bool equals(const KeymapFile& other) const;

 private:
  int file_ = -1;
  std::uint32_t size_ = 0;  ///< in bytes, including the NUL byte at the end
};

/// The evdev codes of the keys that copying needs, and the modifier bit of Control.
struct ChordKeys {
  std::optional<std::uint32_t> control;
  std::optional<std::uint32_t> insert;
  std::optional<std::uint32_t> copy;
  std::uint32_t controlBit = 0;
};

[[nodiscard]] ChordKeys chordKeys(xkb_keymap& keymap);

/// Tracks the keymap of the seat, which requires neither a window nor the focus. Main thread only.
class SeatKeymap {
 public:
  /// The display must offer a seat and outlive this object. Waits until the compositor has sent the
  /// keymap.
  explicit SeatKeymap(Display& display);
  SeatKeymap(const SeatKeymap&) = delete;
  SeatKeymap& operator=(const SeatKeymap&) = delete;

  /// The keymap that the compositor has sent last. Before the first key press a seat may have none;
  /// then the default keymap of the system, if any.
  [[nodiscard]] const KeymapFile& file() const;

  /// How often a keymap has replaced a different one.
  [[nodiscard]] unsigned generation() const { return generation_; }

  /// Called whenever the compositor sends a keymap that differs from the one before.
  void setChangeHandler(std::function<void()> handler) { changed_ = std::move(handler); }

  /// Returns a function that tells whether any layout has the named symbol on this key, an X key
  /// code.
  [[nodiscard]] std::function<bool(const std::string& name)> symbolsOf(std::uint32_t key) const;

  /// The name of the symbol of a key, an X key code, in the first layout without modifiers. Empty
  /// if there is none.
  [[nodiscard]] std::string symbolName(std::uint32_t key) const;

  // Called by libwayland.
  void capabilitiesChanged(std::uint32_t capabilities);
  void keymapChanged(std::uint32_t format, int file, std::uint32_t size);

 private:
  Display& display_;
  Owned<wl_keyboard> keyboard_;  ///< the source of the keymap
  mutable KeymapFile file_;
  unsigned generation_ = 0;
  std::function<void()> changed_;
};

}  // namespace seldial::platform::wayland
