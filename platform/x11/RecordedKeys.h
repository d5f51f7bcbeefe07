// Key events as a toolkit hands them on, in the terms of hot keys.
#pragma once

#include "platform/RecordingKeyboard.h"
#include "platform/x11/Keyboards.h"

namespace seldial::platform::x11 {

/// The events themselves tell what is down: asked for it, the server would already know of events
/// that are still to be read. Main thread only.
class RecordedKeys final : public RecordingKeyboard {
 public:
  explicit RecordedKeys(Keyboards& keyboards) : keyboards_(keyboards) {}

  void begin() override;
  std::optional<RecordedKey> read(const HardwareKeyEvent& event) override;

 private:
  [[nodiscard]] unsigned carriedBy(std::uint32_t key) const;
  [[nodiscard]] unsigned carriedByHeldKeys() const;
  [[nodiscard]] unsigned stateAfter(const HardwareKeyEvent& event, unsigned carried) const;
  [[nodiscard]] std::uint64_t flagsFor(unsigned state) const;

  Keyboards& keyboards_;
  KeySet held_;
};

}  // namespace seldial::platform::x11
