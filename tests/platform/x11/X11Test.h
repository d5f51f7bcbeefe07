// A desktop with only the ports under test and a user's keyboard.
#pragma once

#include <gtest/gtest.h>

#include "tests/platform/x11/X11Port.h"
#include "tests/support/desktop/Keyboard.h"
#include "tests/support/desktop/Keys.h"
#include "tests/support/desktop/XClient.h"
#include "tests/support/desktop/XServer.h"

namespace seldial::platform::x11 {

using namespace tests;  // NOLINT: the tests speak of the desktop's things by their short names
using KeySetSeen = std::set<std::uint8_t>;

constexpr std::uint32_t kControlAlt = kHotKeyControl | kHotKeyOption;
const std::vector<std::uint8_t> kControlAltKeys{kKeyLeftControl, kKeyLeftAlt};

class X11Test : public ::testing::Test {
 protected:
  explicit X11Test(const std::vector<std::string>& serverArguments = {})
      : server(serverArguments), keyboard(server.display()), port(server.display()) {}

  /// After every test: no key may be stuck on any keyboard.
  void TearDown() override {
    if (!serverLives) return;
    port.settle();
    EXPECT_EQ(keyboard.down(), KeySetSeen{});
    EXPECT_EQ(keyboard.physicallyDown(), KeySetSeen{});
    EXPECT_EQ(keyboard.typedDown(), KeySetSeen{});
    EXPECT_EQ(keyboard.modifiers(), 0U);
    EXPECT_EQ(port.connectionsLost(), 0);
  }

  void killServer() {
    serverLives = false;
    server.kill();
  }

  /// Sets the layout of all keyboards, or of one of them, from a file of the test data.
  void useLayout(const std::string& file, const std::string& keyboardNumber = {}) {
    std::vector<std::string> command{"xkbcomp", "-w0"};
    if (!keyboardNumber.empty()) command.insert(command.end(), {"-i", keyboardNumber});
    command.insert(command.end(), {SELDIAL_TEST_DATA "/" + file, server.display()});
    ASSERT_EQ(server.run(command), 0);
  }

  /// The user uses Ctrl+Alt+D.
  void useHotKey() {
    keyboard.press(kControlAltKeys);
    keyboard.tap(kKeyD);
    keyboard.release(kControlAltKeys);
  }

  XServer server;
  Keyboard keyboard;
  X11Port port;
  bool serverLives = true;
};

}  // namespace seldial::platform::x11
