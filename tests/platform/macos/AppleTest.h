#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/platform/macos/Apple.h"

namespace seldial::tests {

/// Gives each test a new system, and checks that the port has released every object.
class AppleTest : public testing::Test {
 protected:
  AppleTest() { apple() = Apple(); }
  ~AppleTest() override { EXPECT_THAT(apple().living, testing::IsEmpty()); }

  /// The calls since the last newCalls().
  static std::vector<std::string> newCalls() { return std::exchange(apple().calls, {}); }
};

}  // namespace seldial::tests
