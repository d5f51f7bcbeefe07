#include "platform/KeyboardLayout.h"

#include "platform/Installed.h"

namespace seldial::platform {

KeyboardLayout& currentKeyboardLayout() {
  if (const auto& layout = installed<KeyboardLayout>()) return *layout;
  static auto* const system = new std::shared_ptr<KeyboardLayout>(makeSystemKeyboardLayout());
  return **system;
}

}  // namespace seldial::platform
