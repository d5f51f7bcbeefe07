// The keymap of the user's seat: what its keys mean in the layouts that the user has chosen.
#pragma once

#include <xkbcommon/xkbcommon.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/wayland/Display.h"

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

/// The keys that copying needs, as evdev numbers them, and the bit of Control among the modifiers.
struct ChordKeys {
  std::optional<std::uint32_t> control;
  std::optional<std::uint32_t> insert;
  std::optional<std::uint32_t> copy;
  std::uint32_t controlBit = 0;
};

[[nodiscard]] ChordKeys chordKeys(xkb_keymap& keymap);

/// Follows the keymap of the seat, which needs neither a window nor the focus. Main thread only.
class SeatKeymap {
 public:
  /// The display must offer a seat and outlive this object. Waits until the compositor has told the
  /// keymap.
  explicit SeatKeymap(Display& display);
  SeatKeymap(const SeatKeymap&) = delete;
  SeatKeymap& operator=(const SeatKeymap&) = delete;

  /// As the compositor sent it last. A seat where no key has been pressed may have none: then the
  /// system's, and nothing when there is none either.
  [[nodiscard]] const KeymapFile& file() const;

  /// Called whenever the compositor sends a keymap that differs from the one before.
  void whenChanged(std::function<void()> handler) { changed_ = std::move(handler); }

  /// Tells of names of key symbols whether some layout has them on this key, an X key code.
  [[nodiscard]] std::function<bool(const std::string& name)> symbolsOf(std::uint32_t key) const;

  /// The name of the symbol that the first layout puts on a key, an X key code, without modifiers.
  /// Empty when there is none.
  [[nodiscard]] std::string symbolName(std::uint32_t key) const;

  // Called by libwayland.
  void capabilitiesChanged(std::uint32_t capabilities);
  void keymapChanged(std::uint32_t format, int file, std::uint32_t size);

 private:
  Display& display_;
  Owned<wl_keyboard> keyboard_;  ///< tells the keymap
  mutable KeymapFile file_;
  std::function<void()> changed_;
};

}  // namespace seldial::platform::wayland
