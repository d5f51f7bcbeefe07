// Changes of keyboards while a hot key is registered.
#include "tests/platform/x11/DialTest.h"
#include "tests/support/desktop/Xcb.h"

namespace seldial::platform::x11 {
namespace {

constexpr xcb_keysym_t kInsertSymbol = 0xFF63;

class HotKeyLife : public DialTest {
 protected:
  void expectDialWhileHeld() {
    useHotKey();
    expectDial(1);
    keyboard.press(kControlAltKeys);
    keyboard.tap(kKeyD);
    expectDial(2);
    keyboard.release(kControlAltKeys);
    keyboard.waitForTypedDown({});
  }
};
using HotKeyUses = X11Test;

TEST_F(HotKeyUses, FiftyInARowAreFiftyReleases) {
  ASSERT_TRUE(port.registerHotKey(kVK_ANSI_D, kControlAlt));
  for (int use = 0; use < 50; ++use) useHotKey();
  port.waitForReleases(50);
  port.settle();
  EXPECT_EQ(port.releases().size(), 50U);
}

TEST_F(HotKeyLife, SurvivesThatNoKeyboardIsLeft) {
  const XClient client(server.display());
  useHotKey();
  expectDial(1);
  keyboard.unplug();
  port.settle();
  keyboard.plugIn();
  useHotKey();
  expectDial(2);
}

TEST_F(HotKeyLife, WorksOnAKeyboardThatIsPluggedInLater) {
  const XClient client(server.display());
  keyboard.unplug();
  port.unregisterHotKey(hotKey);
  ASSERT_TRUE(port.registerHotKey(kVK_ANSI_D, kControlAlt));
  keyboard.plugIn();
  keyboard.press(kControlAltKeys);
  keyboard.tap(kKeyD);
  expectDial(1);
  keyboard.waitForTypedDown({kKeyLeftControl, kKeyLeftAlt});  // held, and the program knows it
  keyboard.release(kControlAltKeys);
  keyboard.waitForTypedDown({});
}

TEST_F(HotKeyLife, ASecondMasterKeyboardChangesNothing) {
  const XClient client(server.display());
  keyboard.addMaster("second");
  expectDialWhileHeld();
}

TEST_F(HotKeyLife, FollowsAnInsertKeyThatMovesToAnotherPlace) {
  const XClient client(server.display());
  ASSERT_TRUE(port.call([&] { return port.clipboard().copySelection(); }));
  keyboard.remap(kKeyInsert, 0);
  port.settle();
  port.settle();
  EXPECT_FALSE(port.call([&] { return port.clipboard().copySelection(); }));
  keyboard.remap(kKeyInsert, kInsertSymbol);
  port.settle();
  port.settle();
  useHotKey();
  expectDial(1);
}

/// Modifiers that are tapped count for the next key.
class StickyKeys : public HotKeyLife {
 protected:
  void SetUp() override {
    DialTest::SetUp();
    auto* const connection = connectToServer(server.display());
    freed(
        xcb_xkb_use_extension_reply(connection, xcb_xkb_use_extension(connection, 1, 0), nullptr));
    const std::uint32_t sticky = XCB_XKB_BOOL_CTRL_STICKY_KEYS;
    const std::vector<std::uint8_t> repeats(32);
    xcb_xkb_set_controls(connection, XCB_XKB_ID_USE_CORE_KBD, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                         sticky, sticky, XCB_XKB_CONTROL_CONTROLS_ENABLED, 0, 0, 0, 0, 0, 0, 0, 0,
                         0, 0, 0, 0, 0, 0, repeats.data());
    synchronise(connection);
    xcb_disconnect(connection);
  }
};

TEST_F(StickyKeys, AHotKeyThatIsTappedKeyByKeyDials) {
  const XClient client(server.display());
  for (const auto key : kControlAltKeys) keyboard.tap(key);
  EXPECT_EQ(keyboard.modifiers(), kStateControl | kStateAlt);
  keyboard.tap(kKeyD);
  expectDial(1);
}

TEST_F(StickyKeys, AHotKeyThatIsHeldDialsAndNothingSticks) {
  const XClient client(server.display());
  expectDialWhileHeld();
}

}  // namespace
}  // namespace seldial::platform::x11
