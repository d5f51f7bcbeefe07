// Combinations that running processes hold, and those that killed ones have left.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "platform/wayland/HotKeyClaims.h"
#include "tests/support/TemporaryDirectory.h"

namespace seldial::platform::wayland {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class HotKeyClaimsTest : public testing::Test {
 protected:
  tests::TemporaryDirectory directory;
  HotKeyClaims claims{directory.path("seldial"), "sway.sock"};
  HotKeyClaims others{directory.path("seldial"), "sway.sock"};
};

TEST_F(HotKeyClaimsTest, ACombinationIsHeldOnceUntilItIsReleased) {
  auto claim = claims.claim("Ctrl+40");
  ASSERT_TRUE(claim);
  EXPECT_FALSE(others.claim("Ctrl+40"));
  EXPECT_FALSE(claims.claim("Ctrl+40"));
  EXPECT_TRUE(others.claim("Ctrl+41"));
  claim.reset();
  EXPECT_TRUE(others.claim("Ctrl+40"));
}

TEST_F(HotKeyClaimsTest, NothingIsLeftBehind) {
  claims.claim("Ctrl+40").reset();
  EXPECT_TRUE(std::filesystem::is_empty(directory.path("seldial")));
}

TEST_F(HotKeyClaimsTest, AbandonedCombinationsAreReturnedOnce) {
  const auto held = claims.claim("Ctrl+40");
  std::ofstream(directory.path("seldial/sway.sock Mod4+71"));
  std::ofstream(directory.path("seldial/other.sock Mod4+72"));
  EXPECT_THAT(others.takeAbandoned(), ElementsAre("Mod4+71"));
  EXPECT_THAT(others.takeAbandoned(), IsEmpty());
}

TEST_F(HotKeyClaimsTest, WithoutARuntimeDirectoryEverythingIsFree) {
  HotKeyClaims nowhere("/nonexistent/seldial", "sway.sock");
  EXPECT_TRUE(nowhere.claim("Ctrl+40"));
  EXPECT_THAT(nowhere.takeAbandoned(), IsEmpty());
}

}  // namespace
}  // namespace seldial::platform::wayland
