// Keys that the user, or another program, holds while the copy keystroke is typed.
#include <algorithm>

#include "platform/x11/copy/CopyKeystroke.h"
#include "tests/platform/x11/DialTest.h"
#include "tests/support/desktop/Xcb.h"

namespace seldial::platform::x11 {
namespace {

using HeldModifiers = DialTest;

/// Counts how often a server's applications begin to receive keys from another keyboard.
class KeyboardSwitches {
 public:
  explicit KeyboardSwitches(const std::string& display) : connection_(connectToServer(display)) {
    freed(xcb_xkb_use_extension_reply(connection_, xcb_xkb_use_extension(connection_, 1, 0),
                                      nullptr));
    const auto events = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY;
    xcb_xkb_select_events(connection_, XCB_XKB_ID_USE_CORE_KBD, events, 0, events, 0, 0, nullptr);
    synchronise(connection_);
  }
  ~KeyboardSwitches() { xcb_disconnect(connection_); }
  KeyboardSwitches(const KeyboardSwitches&) = delete;
  KeyboardSwitches& operator=(const KeyboardSwitches&) = delete;

  [[nodiscard]] int count() {
    synchronise(connection_);
    while (freed(xcb_poll_for_event(connection_))) ++count_;
    return count_;
  }

 private:
  xcb_connection_t* connection_;
  int count_ = 0;
};

TEST_F(HeldModifiers, ModifiersThatAreStillHeldDoNotChangeIt) {
  const XClient client(server.display());
  keyboard.press(kControlAltKeys);
  keyboard.tap(kKeyD);
  expectDial(1);
  EXPECT_EQ(typedInto(client), (Typed{{kKeyInsert, kStateControl}}));
  keyboard.release(kControlAltKeys);
}

TEST_F(HeldModifiers, EveryModifierThatCanBeHeldDoesNotChangeIt) {
  const XClient client(server.display());
  keyboard.press(kControlAltKeys);
  keyboard.press({kKeyD, kKeyLeftSuper, kKeyLeftShift, kKeyRightControl, kKeyAltGr});
  keyboard.release(kKeyD);
  expectDial(1);
  EXPECT_EQ(typedInto(client), (Typed{{kKeyInsert, kStateControl}}));
  keyboard.release({kKeyLeftSuper, kKeyLeftShift, kKeyRightControl, kKeyAltGr});
  keyboard.release(kControlAltKeys);
}

TEST_F(HeldModifiers, TheHotKeyWorksAgainWhileItsModifiersAreKeptDown) {
  const XClient client(server.display());
  keyboard.press(kControlAltKeys);
  for (std::size_t uses = 1; uses <= 3; ++uses) {
    keyboard.tap(kKeyD);
    expectDial(uses);
    EXPECT_EQ(keyboard.modifiers(), kStateControl | kStateAlt);
  }
  keyboard.release(kControlAltKeys);
  port.settle();
  EXPECT_EQ(typedInto(client), Typed(3, {kKeyInsert, kStateControl}));
}

TEST_F(HeldModifiers, ModifiersReleasedDuringTheWaitAreNotStuck) {
  const XClient client(server.display());
  std::promise<void> blocking;
  port.whenBlocking([&] { blocking.set_value(); });
  port.dialOnRelease(std::chrono::seconds(2));
  keyboard.press(kControlAltKeys);
  keyboard.tap(kKeyD);
  blocking.get_future().wait();
  EXPECT_EQ(keyboard.typedDown(), (KeySetSeen{kKeyLeftControl, kKeyLeftAlt}));
  keyboard.release(kKeyLeftAlt);
  keyboard.waitForTypedDown({kKeyLeftControl});
  EXPECT_EQ(keyboard.modifiers(), kStateControl);
  keyboard.release(kKeyLeftControl);
  keyboard.waitForTypedDown({});
  EXPECT_EQ(keyboard.modifiers(), 0U);
  EXPECT_EQ(port.dialled().size(), 0U);  // all of this happened while the main thread was blocked
  expectDial(1);
}

TEST_F(HeldModifiers, ModifiersReleasedBeforeTheKeyAreNotTyped) {
  const XClient client(server.display());
  keyboard.press(kControlAltKeys);
  keyboard.press(kKeyD);
  keyboard.release(kControlAltKeys);
  keyboard.release(kKeyD);
  expectDial(1);
  keyboard.tap(kKeyF5);
  client.waitForRelease(kKeyF5);
  // The presses of the hot key's modifiers, the keystroke, and the last key.
  EXPECT_EQ(client.keys().size(), 2U + 4U + 2U);
}

TEST_F(HeldModifiers, PressesDuringTheWaitAreEachHandledAfterwards) {
  const XClient client(server.display());
  std::promise<void> blocking;
  std::atomic<int> blocks{0};
  port.whenBlocking([&] {
    if (++blocks == 1) blocking.set_value();
  });
  useHotKey();
  blocking.get_future().wait();
  useHotKey();
  useHotKey();
  port.waitForDials(3);
  port.settle();
  EXPECT_EQ(port.dialled(), std::vector<std::optional<std::string>>(3, kNumber));
  EXPECT_EQ(typedInto(client), Typed(3, {kKeyInsert, kStateControl}));
}

TEST_F(HeldModifiers, APressWhileATextIsAwaitedIsHandledAfterwards) {
  XClientSettings settings;
  settings.copy.never = true;
  int asked = 0;
  settings.copy.whenSilent = [&] {
    if (++asked == 1) useHotKey();
  };
  const XClient client(server.display(), settings);
  useHotKey();
  port.waitForDials(2);
  EXPECT_EQ(port.releases().size(), 2U);
  EXPECT_EQ(client.copies(), 2);
}

TEST_F(HeldModifiers, AHotKeyHeldAgainMeanwhileIsOneMoreUseAndTypesNothing) {
  const XClient client(server.display());
  keyboard.press(kControlAltKeys);
  keyboard.tap(kKeyD);
  // Down again before the keystroke of the first use is typed, and long enough to repeat.
  keyboard.hold(kKeyD, std::chrono::milliseconds(1500));
  keyboard.release(kControlAltKeys);
  port.waitForDials(2);
  port.settle();
  EXPECT_EQ(port.dialled(), std::vector<std::optional<std::string>>(2, kNumber));
  EXPECT_EQ(typedInto(client), Typed(2, {kKeyInsert, kStateControl}));
}

TEST_F(HeldModifiers, AHotKeyUsedAgainAfterThatIsAUseAsAnyOther) {
  const XClient client(server.display());
  keyboard.press(kControlAltKeys);
  keyboard.tap(kKeyD);
  keyboard.hold(kKeyD, std::chrono::milliseconds(800));
  port.waitForDials(2);
  keyboard.tap(kKeyD);
  port.waitForDials(3);
  keyboard.release(kControlAltKeys);
  port.settle();
  EXPECT_EQ(port.dialled().size(), 3U);
}

TEST_F(HeldModifiers, AKeyThatAnotherProgramLeftDownDoesNotSpoilIt) {
  for (const auto key : {kKeyLeftControl, kKeyRightControl, kKeyLeftShift, kKeyInsert}) {
    const XClient client(server.display());
    keyboard.typeThroughXTest(key, true);
    EXPECT_EQ(port.call([&] { return port.dial(kDelay); }), kNumber) << key;
    EXPECT_EQ(typedInto(client).back(), (std::pair{0U + kKeyInsert, kStateControl})) << key;
  }
}

TEST_F(HeldModifiers, AHotKeyThatAProgramTypesWorksToo) {
  const XClient client(server.display());
  for (const auto key : {kKeyLeftControl, kKeyLeftAlt, kKeyD}) keyboard.typeThroughXTest(key, true);
  for (const auto key : {kKeyD, kKeyLeftAlt, kKeyLeftControl})
    keyboard.typeThroughXTest(key, false);
  expectDial(1);
}

TEST_F(HeldModifiers, AKeyboardUnpluggedWithItsKeysDownLeavesNothingStuck) {
  const XClient client(server.display());
  keyboard.press(kControlAltKeys);
  keyboard.tap(kKeyD);
  expectDial(1);
  keyboard.unplug();
  keyboard.waitForTypedDown({});
  keyboard.plugIn();
  keyboard.release(kControlAltKeys);
}

TEST_F(HeldModifiers, AConnectionThatIsClosedLeavesNothingStuck) {
  const XClient client(server.display());
  keyboard.press(kControlAltKeys);
  keyboard.tap(kKeyD);
  expectDial(1);
  EXPECT_EQ(keyboard.typedDown(), (KeySetSeen{kKeyLeftControl, kKeyLeftAlt}));
  auto* const other = tests::connectToServer(server.display());
  xcb_kill_client(other, port.call([this] { return port.session().connection.window(); }));
  tests::synchronise(other);
  xcb_disconnect(other);
  port.waitForLoss();
  serverLives = false;  // for us
  port.call([this] { port.dropClipboard(); });
  keyboard.waitForTypedDown({});
  keyboard.release(kControlAltKeys);
  EXPECT_EQ(keyboard.modifiers(), 0U);
}

TEST_F(HeldModifiers, NothingIsTypedOnALaterServerOfTheSameDisplay) {
  const XClient client(server.display());
  keyboard.press(kControlAltKeys);
  keyboard.tap(kKeyD);
  expectDial(1);
  keyboard.waitForTypedDown({kKeyLeftControl, kKeyLeftAlt});
  const XServer later;
  Keyboard itsKeyboard(later.display());
  itsKeyboard.tap(kKeyD);
  KeyboardSwitches switches(later.display());
  setenv("DISPLAY", later.display().c_str(), 1);
  killServer();
  port.waitForLoss();
  port.call([this] { port.dropClipboard(); });
  EXPECT_EQ(switches.count(), 0);
  itsKeyboard.typeThroughXTest(kKeyD, true);
  itsKeyboard.typeThroughXTest(kKeyD, false);
  EXPECT_EQ(switches.count(), 1);
}

TEST_F(HeldModifiers, AControlPressedMeanwhileStaysPressed) {
  const XClient client(server.display());
  std::unique_ptr<CopyKeystroke> keystroke;
  port.call([&] {
    port.dropClipboard();
    keystroke = std::make_unique<CopyKeystroke>(port.session());
    ASSERT_TRUE(keystroke->isPossible());
    keystroke->press();
    keyboard.press(kKeyLeftControl);
    keystroke->release();
  });
  keyboard.waitForTypedDown({kKeyLeftControl});
  EXPECT_EQ(keyboard.modifiers(), kStateControl);
  keyboard.release(kKeyLeftControl);
  keyboard.waitForTypedDown({});
  port.call([&] { keystroke.reset(); });
}

TEST(HeldModifiersAtTheEnd, NothingIsStuckWhenTheProgramEnds) {
  const XServer server;
  Keyboard keyboard(server.display());
  const XClient client(server.display());
  {
    X11Port port(server.display());
    ASSERT_TRUE(port.registerHotKey(kVK_ANSI_D, kControlAlt));
    port.dialOnRelease(kDelay);
    keyboard.press(kControlAltKeys);
    keyboard.tap(kKeyD);
    port.waitForDials(1);
    EXPECT_EQ(keyboard.typedDown(), (KeySetSeen{kKeyLeftControl, kKeyLeftAlt}));
  }
  keyboard.waitForTypedDown({});
  keyboard.release(kControlAltKeys);
  EXPECT_EQ(keyboard.down(), KeySetSeen{});
}

}  // namespace
}  // namespace seldial::platform::x11
