#include "tests/platform/macos/Apple.h"

#include <gtest/gtest.h>
#include <mach-o/dyld.h>

#include <algorithm>

namespace seldial::tests {

Apple& apple() {
  static Apple apple;
  return apple;
}

std::uintptr_t Apple::make(const std::string& name) {
  constexpr std::uintptr_t kApart = 0x1000;
  lastObject_ += kApart;
  living[lastObject_] = name;
  return lastObject_;
}

std::string Apple::nameOf(const void* object) const {
  if (object == nullptr) return "null";
  const auto found = living.find(reinterpret_cast<std::uintptr_t>(object));
  return found != living.end() ? found->second : "something that is gone";
}

void Apple::release(const void* object) {
  EXPECT_EQ(living.erase(reinterpret_cast<std::uintptr_t>(object)), 1U) << "nothing to release";
}

OSStatus Apple::releaseHotKey(EventHotKeyID hotKeyID) {
  parameter = hotKeyID;
  const auto event = make("hot key event");
  const auto status = handler(nullptr, reinterpret_cast<EventRef>(event), handlerUserData);
  living.erase(event);
  return status;
}

}  // namespace seldial::tests

int _NSGetExecutablePath(char* path, std::uint32_t* size) {
  const std::string& executable = seldial::tests::apple().executable;
  const bool fits = executable.size() < *size;
  if (fits) *std::copy(executable.begin(), executable.end(), path) = '\0';
  *size = static_cast<std::uint32_t>(executable.size() + 1);
  return fits ? 0 : -1;
}
