#include <chrono>

#include "platform/macos/Desktop.h"
#include "platform/macos/HotKeyEvents.h"
#include "tests/platform/macos/AppleTest.h"

namespace seldial::platform::macos {
namespace {

using testing::ElementsAre;
using tests::apple;

class NoDelegate final : public ApplicationDelegate {
 public:
  void applicationWillFinishLaunching() override {}
  void applicationDidFinishLaunching() override {}
  void applicationWillTerminate() override {}
};

struct MacApplicationTest : tests::AppleTest {
  MacApplication application{{"/Applications/Seldial", "-log"}};
  NoDelegate delegate;
};

TEST_F(MacApplicationTest, HasTheCommandLineAsGiven) {
  EXPECT_THAT(application.arguments(), ElementsAre("/Applications/Seldial", "-log"));
}

TEST_F(MacApplicationTest, TerminatesTheSharedApplication) {
  application.terminate(&delegate);
  application.terminate(nullptr);
  EXPECT_THAT(apple().calls, ElementsAre("terminate: from the delegate", "terminate: from nobody"));
}

TEST_F(MacApplicationTest, SleepsAtLeastAsLongAsAsked) {
  const auto begin = std::chrono::steady_clock::now();
  application.usleep(20000);
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::microseconds(20000));
}

using MacPorts = tests::AppleTest;

TEST_F(MacPorts, AreThoseOfThisSystem) {
  const auto ports = makePorts({"seldial", "-jsonlog"});
  EXPECT_THAT(ports.application->arguments(), ElementsAre("seldial", "-jsonlog"));
  EXPECT_NE(dynamic_cast<DispatchMainQueue*>(ports.mainQueue.get()), nullptr);
  const auto desktop = ports.connectDesktop();
  EXPECT_NE(dynamic_cast<CarbonHotKeyEvents*>(desktop.hotKeyEvents.get()), nullptr);
  EXPECT_NE(dynamic_cast<MacClipboard*>(desktop.clipboard.get()), nullptr);
  EXPECT_THAT(apple().calls, testing::IsEmpty());
}

}  // namespace
}  // namespace seldial::platform::macos
