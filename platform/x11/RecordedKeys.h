// Key events of a toolkit's window, in terms of virtual keys.
#pragma once

#include "platform/Keyboard.h"
#include "platform/x11/Keyboards.h"

namespace seldial::platform::x11 {

/// Keeps track of the held keys by the events alone. The server cannot be asked: it already knows
/// of events that are still to be read. Main thread only.
class RecordedKeys final : public RecordingKeyboard {
 public:
  explicit RecordedKeys(Keyboards& keyboards) : keyboards_(keyboards) {}

  void begin() override;
  std::optional<KeyEvent> read(std::uint32_t key, std::uint32_t state, bool pressed) override;

 private:
  [[nodiscard]] unsigned carriedBy(std::uint32_t key) const;
  [[nodiscard]] unsigned carriedByHeldKeys() const;
  [[nodiscard]] unsigned stateAfter(unsigned state, unsigned carried, bool pressed) const;
  [[nodiscard]] std::uint64_t flagsFor(unsigned state) const;

  Keyboards& keyboards_;
  KeySet held_;
};

}  // namespace seldial::platform::x11
