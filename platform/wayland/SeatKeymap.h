// The keymap of a seat: which symbols the user's layouts put on which key.
#pragma once

#include <xkbcommon/xkbcommon.h>

#include <cstdint>
#include <functional>
#include <memory>
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

/// Follows the keymap of the seat, which needs neither a window nor the focus. Main thread only.
class SeatKeymap {
 public:
  /// The display must offer a seat and outlive this object. Waits until the compositor has told the
  /// keymap.
  explicit SeatKeymap(Display& display);
  SeatKeymap(const SeatKeymap&) = delete;
  SeatKeymap& operator=(const SeatKeymap&) = delete;

  /// As the compositor told it last. A seat where no key has been pressed may have none; then the
  /// keymap of the system. Nothing when there is neither.
  [[nodiscard]] const KeymapFile& file() const;

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
  Owned<wl_keyboard> keyboard_;
  mutable KeymapFile file_;
};

}  // namespace seldial::platform::wayland
