// What the client shows on the desktop, as the session bus sees it.
#include <gtest/gtest.h>

#include "tests/support/desktop/Keyboard.h"
#include "tests/support/desktop/Keys.h"
#include "tests/support/desktop/XClient.h"
#include "tests/support/desktop/XServer.h"
#include "tests/ucclient/RunningClient.h"

namespace seldial {
namespace {

class Notifications : public testing::Test {
 protected:
  Notifications() {
    EXPECT_TRUE(monitor_.waitForLine("NameAcquired"));  // it listens from now on
  }

  void use(RunningClient& client, const std::string& selection) {
    ASSERT_TRUE(client.process().waitForLine("is set: "));
    tests::XClientSettings settings;
    settings.copy = tests::answersWith(selection);
    const tests::XClient editor(server_.display(), settings);
    tests::Keyboard keyboard(server_.display());
    keyboard.press({tests::kKeyLeftControl, tests::kKeyLeftAlt, tests::kKeyD});
    keyboard.release({tests::kKeyD, tests::kKeyLeftAlt, tests::kKeyLeftControl});
    ASSERT_TRUE(client.process().waitForLine("ialled"));
  }

  tests::XServer server_;
  tests::ChildProcess daemon_{{"dbus-daemon", "--session", "--nofork", "--print-address"}};
  const std::string bus_ = daemon_.readLine();
  tests::ChildProcess monitor_{{"dbus-monitor", "--address", bus_}};
};

TEST_F(Notifications, ACallIsShownWithItsNumber) {
  RunningClient client({"--dial", "true", "--delay", "50", "--region", "NL"}, server_.environment(),
                       "/usr/bin:/bin", bus_);
  use(client, "Tel. 020 123\u00A04567");
  EXPECT_TRUE(monitor_.waitForLine("member=Notify"));
  EXPECT_TRUE(monitor_.waitForLine("string \"Calling +31201234567\""));
}

TEST_F(Notifications, WhatIsNotDialledIsShownWithTheReason) {
  RunningClient client({"--dial", "true", "--delay", "50", "--region", "NL"}, server_.environment(),
                       "/usr/bin:/bin", bus_);
  use(client, "hello");
  EXPECT_TRUE(monitor_.waitForLine("string \"Nothing was dialled\""));
  EXPECT_TRUE(monitor_.waitForLine("string \"there is no telephone number in the selection\""));
}

}  // namespace
}  // namespace seldial
