// A terminal keeps PRIMARY when a click clears the selection. The old text must not be dialled.
#include "platform/x11/EventPump.h"
#include "tests/platform/x11/DialTest.h"
#include "tests/support/desktop/Xcb.h"

namespace seldial::platform::x11 {
namespace {

/// A terminal at the top left with a selection.
class DroppedSelection : public DialTest {
 protected:
  void SetUp() override {
    DialTest::SetUp();
    port.dialOnRelease(std::chrono::milliseconds(1));  // nothing has to be copied
    waitUntilIdle();
    client.own("PRIMARY", answersWith(kNumber));
  }

  /// Returns once the port is idle and the server has executed its requests.
  void waitUntilIdle() {
    port.call([this] {
      port.session().pump.willWait();
      port.session().connection.synchronise();
    });
  }

  std::optional<std::string> dial() {
    useHotKey();
    port.waitForDials(++dials_);
    return port.dialled().back();
  }

  static XClientSettings terminal() {
    XClientSettings settings;
    settings.wmClass = "XTerm";
    return settings;
  }

  XClient client{server.display(), terminal()};

 private:
  std::size_t dials_ = 0;
};

TEST_F(DroppedSelection, IsNotDialled) {
  EXPECT_EQ(dial(), kNumber);
  keyboard.click(10, 10);
  EXPECT_EQ(dial(), std::nullopt);
  EXPECT_EQ(dial(), std::nullopt);
}

TEST_F(DroppedSelection, ASelectionMadeByAClickIsDialled) {
  keyboard.click(10, 10);
  client.own("PRIMARY", answersWith("+49 30 1"));
  EXPECT_EQ(dial(), "+49 30 1");
  keyboard.click(10, 10);
  EXPECT_EQ(dial(), std::nullopt);
}

TEST_F(DroppedSelection, ASelectionThatABusyTerminalTakesLateIsDialled) {
  keyboard.click(10, 10);
  port.whenBlocking([&] { client.own("PRIMARY", answersWith("+49 30 1")); });
  EXPECT_EQ(dial(), "+49 30 1");
}

TEST_F(DroppedSelection, AClickOnAnotherWindowOfTheSameProgramHasNoEffect) {
  const XClient over(server.display(), terminal());
  keyboard.click(10, 10);
  client.takeFocus();
  EXPECT_EQ(dial(), kNumber);
}

TEST_F(DroppedSelection, AClickOutsideTheWindowHasNoEffect) {
  keyboard.click(600, 400);
  EXPECT_EQ(dial(), kNumber);
}

TEST_F(DroppedSelection, OtherButtonsAndTheWheelHaveNoEffect) {
  for (const std::uint8_t button : std::vector<std::uint8_t>{2, 3, 4, 5})
    keyboard.click(10, 10, button);
  EXPECT_EQ(dial(), kNumber);
}

TEST_F(DroppedSelection, ForALeftHandedUserTheOtherButtonClearsIt) {
  keyboard.swapMouseButtons();
  keyboard.click(10, 10, 1);
  EXPECT_EQ(dial(), kNumber);
  keyboard.click(10, 10, 3);
  EXPECT_EQ(dial(), std::nullopt);
}

TEST_F(DroppedSelection, IsNotDialledByTheHotKeyThatReplacesTheFirstEither) {
  keyboard.click(10, 10);
  port.call([this] {
    port.hotKeys().unregisterHotKey(hotKey);
    return port.hotKeys().registerHotKey(kVK_ANSI_D, kControlAlt, {0, 2});
  });
  EXPECT_EQ(dial(), std::nullopt);
}

TEST_F(DroppedSelection, IsNotDialledAfterAClickThroughVeryManyWindows) {
  auto* const connection = connectToServer(server.display());
  auto around = client.window();
  for (int depth = 0; depth < 1100; ++depth) {
    const auto window = xcb_generate_id(connection);
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, around, 0, 0, 200, 50, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_map_window(connection, window);
    around = window;
  }
  synchronise(connection);
  keyboard.click(10, 10);
  EXPECT_EQ(dial(), std::nullopt);
  client.own("PRIMARY", answersWith("+49 30 1"));
  EXPECT_EQ(dial(), "+49 30 1");
  xcb_disconnect(connection);
}

/// Counts the events that the ports do not handle.
class UnhandledEvents final : public EventHandler {
 public:
  bool handle(const xcb_generic_event_t& /*event*/) override {
    ++count;
    return true;
  }
  int count = 0;
};

TEST_F(DroppedSelection, WithoutAHotKeyNothingIsWatched) {
  port.unregisterHotKey(hotKey);
  waitUntilIdle();
  UnhandledEvents events;
  port.call([&] { port.session().pump.add(events); });
  keyboard.click(10, 10);
  client.own("PRIMARY", answersWith("+49 30 1"));
  waitUntilIdle();
  port.call([&] { port.session().pump.remove(events); });
  EXPECT_EQ(events.count, 0);
}

}  // namespace
}  // namespace seldial::platform::x11
