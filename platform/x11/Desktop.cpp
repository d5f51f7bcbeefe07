#include "platform/x11/Desktop.h"

namespace seldial::platform::x11 {

std::unique_ptr<Desktop> Desktop::connect(linux_port::MainLoop& /*loop*/,
                                          std::function<void()> /*connectionLost*/) {
  return nullptr;
}

}  // namespace seldial::platform::x11
