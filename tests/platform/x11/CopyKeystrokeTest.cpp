// The copy keystroke, as applications see it.
#include "tests/platform/x11/DialTest.h"

namespace seldial::platform::x11 {
namespace {

using CopyKeystroke = DialTest;

TEST_F(CopyKeystroke, CopiesTheSelectionOfTheFocusedWindow) {
  const XClient client(server.display());
  useHotKey();
  expectDial(1);
  EXPECT_EQ(typedInto(client), (Typed{{kKeyInsert, kStateControl}}));
}

TEST_F(CopyKeystroke, GoesToTheWindowUnderThePointerWhereNoneHasTheFocus) {
  const XClient client(server.display());
  keyboard.movePointer(10, 10);
  keyboard.focusFollowsPointer();
  useHotKey();
  expectDial(1);
}

TEST_F(CopyKeystroke, WithNothingSelectedNothingIsFound) {
  XClientSettings settings;
  settings.copies = false;
  const XClient client(server.display(), settings);
  useHotKey();
  port.waitForDials(1);
  EXPECT_EQ(port.dialled()[0], std::nullopt);
}

TEST_F(CopyKeystroke, WithNoWindowAtAllNothingIsFound) {
  useHotKey();
  port.waitForDials(1);
  EXPECT_EQ(port.dialled()[0], std::nullopt);
}

TEST_F(CopyKeystroke, AnOldTextIsNotDialled) {
  XClientSettings settings;
  settings.copies = false;
  XClient client(server.display(), settings);
  client.own("CLIPBOARD", answersWith("old"));
  useHotKey();
  port.waitForDials(1);
  EXPECT_EQ(port.dialled()[0], std::nullopt);
}

TEST_F(CopyKeystroke, CopiesWithTheLocksOn) {
  const XClient client(server.display());
  keyboard.tap(kKeyCapsLock);
  keyboard.tap(kKeyNumLock);
  useHotKey();
  expectDial(1);
  keyboard.tap(kKeyCapsLock);
  keyboard.tap(kKeyNumLock);
}

TEST_F(CopyKeystroke, CopiesUnderEveryLayout) {
  const XClient client(server.display());
  std::size_t uses = 0;
  for (const char* const layout : {"us", "de", "fr", "ru", "dvorak"}) {
    ASSERT_EQ(server.run({"setxkbmap", layout}), 0);
    useHotKey();
    expectDial(++uses);
  }
}

TEST_F(CopyKeystroke, CopiesWhereTheTypingKeyboardHasAnotherLayoutThanTheUsers) {
  const XClient client(server.display());
  ASSERT_EQ(server.run({"setxkbmap", "dvorak"}), 0);
  ASSERT_EQ(server.run({"setxkbmap", "-device", keyboard.typingDevice(), "fr"}), 0);
  useHotKey();
  expectDial(1);
}

TEST_F(CopyKeystroke, WithoutAnInsertKeyThereIsNoSuchEvent) {
  ASSERT_TRUE(port.call([&] { return port.postCopyKeystroke(); }));
  useLayout("no-insert.xkb");
  port.settle();
  port.settle();
  EXPECT_FALSE(port.call([&] { return port.postCopyKeystroke(); }));
}

TEST_F(CopyKeystroke, TheKeyboardThroughWhichItIsTypedNeedsTheInsertKey) {
  ASSERT_TRUE(port.call([&] { return port.postCopyKeystroke(); }));
  useLayout("no-insert.xkb", keyboard.typingDevice());
  port.settle();
  EXPECT_FALSE(port.call([&] { return port.postCopyKeystroke(); }));
}

TEST_F(CopyKeystroke, EventsOfOtherKeysAreRefused) {
  port.call([] {
    auto& events = *installed<KeyboardEvents>();
    EXPECT_EQ(events.createKeyboardEvent(nullptr, kVirtualD, true), nullptr);
    EXPECT_EQ(events.createKeyboardEvent(nullptr, 65535, true), nullptr);
    EXPECT_NE(events.createKeyboardEvent(nullptr, kVirtualC, true), nullptr);
  });
}

TEST_F(CopyKeystroke, ACWithoutCommandIsNotTyped) {
  const XClient client(server.display());
  port.call([] {
    auto& events = *installed<KeyboardEvents>();
    events.createKeyboardEvent(nullptr, kVirtualC, true)->post(kHIDEventTap);
    events.createKeyboardEvent(nullptr, kVirtualC, false)->post(kHIDEventTap);
  });
  keyboard.tap(kKeyF5);
  client.waitForRelease(kKeyF5);
  EXPECT_EQ(client.keys().size(), 2U);
}

}  // namespace
}  // namespace seldial::platform::x11
