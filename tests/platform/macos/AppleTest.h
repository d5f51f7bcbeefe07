#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/platform/macos/Apple.h"

namespace seldial::tests {

/// A system of its own for each test, in which nothing is left that was not released.
class AppleTest : public testing::Test {
 protected:
  AppleTest() { apple() = Apple(); }
  ~AppleTest() override { EXPECT_THAT(apple().living, testing::IsEmpty()); }

  /// What the system was asked since the last look.
  static std::vector<std::string> newCalls() { return std::exchange(apple().calls, {}); }
};

}  // namespace seldial::tests
