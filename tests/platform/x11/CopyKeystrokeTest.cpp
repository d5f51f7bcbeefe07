// The copy keystroke, as the applications and the user's own keyboard see it.
#include <algorithm>

#include "platform/Installed.h"
#include "tests/platform/x11/X11Test.h"

namespace seldial::platform::x11 {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kDelay{150};
const std::string kNumber = "+31 20 123 4567";

class CopyKeystroke : public X11Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(port.registerHotKey(kVirtualD, kControlAlt));
    port.dialOnRelease(kDelay);
  }

  /// Dials number `count` found the number.
  void expectDial(std::size_t count) {
    port.waitForDials(count);
    EXPECT_EQ(port.dialled()[count - 1], kNumber);
  }

  /// What arrived of keys that are no modifiers, as "key state".
  static std::vector<std::pair<unsigned, unsigned>> typedInto(const XClient& client) {
    std::vector<std::pair<unsigned, unsigned>> result;
    for (const auto& record : client.keys()) {
      const bool modifier =
          std::set<std::uint8_t>{kKeyLeftControl, kKeyRightControl, kKeyLeftAlt,  kKeyAltGr,
                                 kKeyLeftShift,   kKeyLeftSuper,    kKeyCapsLock, kKeyNumLock}
              .count(record.key) != 0;
      if (record.pressed && !modifier) result.emplace_back(record.key, record.state);
    }
    return result;
  }

  using Typed = std::vector<std::pair<unsigned, unsigned>>;
};

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

TEST_F(CopyKeystroke, ModifiersThatAreStillHeldDoNotChangeIt) {
  const XClient client(server.display());
  keyboard.press(kControlAltKeys);
  keyboard.tap(kKeyD);
  expectDial(1);
  EXPECT_EQ(typedInto(client), (Typed{{kKeyInsert, kStateControl}}));
  keyboard.release(kControlAltKeys);
}

TEST_F(CopyKeystroke, EveryModifierThatCanBeHeldDoesNotChangeIt) {
  const XClient client(server.display());
  keyboard.press(kControlAltKeys);
  keyboard.press({kKeyD, kKeyLeftSuper, kKeyLeftShift, kKeyRightControl, kKeyAltGr});
  keyboard.release(kKeyD);
  expectDial(1);
  EXPECT_EQ(typedInto(client), (Typed{{kKeyInsert, kStateControl}}));
  keyboard.release({kKeyLeftSuper, kKeyLeftShift, kKeyRightControl, kKeyAltGr});
  keyboard.release(kControlAltKeys);
}

TEST_F(CopyKeystroke, TheHotKeyWorksAgainWhileItsModifiersAreKeptDown) {
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

TEST_F(CopyKeystroke, ModifiersLetGoDuringTheWaitAreNotStuck) {
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
  EXPECT_EQ(port.dialled().size(), 0U);  // all that while the main thread was blocked
  expectDial(1);
}

TEST_F(CopyKeystroke, ModifiersLetGoBeforeTheKeyAreNotTyped) {
  const XClient client(server.display());
  keyboard.press(kControlAltKeys);
  keyboard.press(kKeyD);
  keyboard.release(kControlAltKeys);
  keyboard.release(kKeyD);
  expectDial(1);
  keyboard.tap(kKeyF5);
  client.waitForRelease(kKeyF5);
  // The hot key's modifiers going down, the keystroke, and the last key.
  EXPECT_EQ(client.keys().size(), 2U + 4U + 2U);
}

TEST_F(CopyKeystroke, PressesDuringTheWaitAreEachHandledAfterwards) {
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

TEST_F(CopyKeystroke, APressWhileATextIsAwaitedIsHandledAfterwards) {
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

TEST_F(CopyKeystroke, AHotKeyHeldAgainMeanwhileIsOneMoreUseAndTypesNothing) {
  const XClient client(server.display());
  keyboard.press(kControlAltKeys);
  keyboard.tap(kKeyD);
  // Down again before the keystroke of the first use is typed, and long enough to repeat.
  keyboard.hold(kKeyD, milliseconds(1500));
  keyboard.release(kControlAltKeys);
  port.waitForDials(2);
  port.settle();
  EXPECT_EQ(port.dialled(), std::vector<std::optional<std::string>>(2, kNumber));
  EXPECT_EQ(typedInto(client), Typed(2, {kKeyInsert, kStateControl}));
}

TEST_F(CopyKeystroke, AHotKeyUsedAgainAfterThatIsAUseAsAnyOther) {
  const XClient client(server.display());
  keyboard.press(kControlAltKeys);
  keyboard.tap(kKeyD);
  keyboard.hold(kKeyD, milliseconds(800));
  port.waitForDials(2);
  keyboard.tap(kKeyD);
  port.waitForDials(3);
  keyboard.release(kControlAltKeys);
  port.settle();
  EXPECT_EQ(port.dialled().size(), 3U);
}

TEST_F(CopyKeystroke, AKeyThatAnotherProgramLeftDownDoesNotSpoilIt) {
  for (const auto key : {kKeyLeftControl, kKeyRightControl, kKeyLeftShift, kKeyInsert}) {
    const XClient client(server.display());
    keyboard.typeThroughXTest(key, true);
    EXPECT_EQ(port.call([&] { return port.dial(kDelay); }), kNumber) << key;
    EXPECT_EQ(typedInto(client).back(), (std::pair{0U + kKeyInsert, kStateControl})) << key;
  }
}

TEST_F(CopyKeystroke, AHotKeyThatAProgramTypesWorksToo) {
  const XClient client(server.display());
  for (const auto key : {kKeyLeftControl, kKeyLeftAlt, kKeyD}) keyboard.typeThroughXTest(key, true);
  for (const auto key : {kKeyD, kKeyLeftAlt, kKeyLeftControl})
    keyboard.typeThroughXTest(key, false);
  expectDial(1);
}

TEST_F(CopyKeystroke, AKeyboardUnpluggedWithItsKeysDownLeavesNothingStuck) {
  const XClient client(server.display());
  keyboard.press(kControlAltKeys);
  keyboard.tap(kKeyD);
  expectDial(1);
  keyboard.unplug();
  keyboard.waitForTypedDown({});
  keyboard.plugIn();
  keyboard.release(kControlAltKeys);
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

class Terminal : public CopyKeystroke {
 protected:
  static XClientSettings terminal(bool focusOnChild = false) {
    XClientSettings settings;
    settings.wmInstance = "xterm";
    settings.wmClass = "XTerm";
    settings.focusOnChild = focusOnChild;
    return settings;
  }

  void expectNothingTyped(const XClient& client) {
    keyboard.tap(kKeyF5);
    client.waitForRelease(kKeyF5);
    EXPECT_EQ(typedInto(client), (Typed{{kKeyF5, 0}}));
  }
};

TEST_F(Terminal, ItsOwnSelectionIsReadAndNothingTyped) {
  XClient client(server.display(), terminal());
  client.own("PRIMARY", answersWith("+49 30 1"));
  client.own("CLIPBOARD", answersWith("old"));
  useHotKey();
  port.waitForDials(1);
  EXPECT_EQ(port.dialled()[0], "+49 30 1");
  expectNothingTyped(client);
}

TEST_F(Terminal, IsRecognisedByTheWindowAroundTheFocus) {
  XClient client(server.display(), terminal(true));
  client.own("PRIMARY", answersWith("+49 30 1"));
  useHotKey();
  port.waitForDials(1);
  EXPECT_EQ(port.dialled()[0], "+49 30 1");
  expectNothingTyped(client);
}

TEST_F(Terminal, TheSelectionOfAnotherProgramIsNotRead) {
  XClient other(server.display());
  other.own("PRIMARY", answersWith("other"));
  const XClient client(server.display(), terminal());
  useHotKey();
  port.waitForDials(1);
  EXPECT_EQ(port.dialled()[0], std::nullopt);
  expectNothingTyped(client);
}

TEST_F(Terminal, WithNothingSelectedNothingIsFound) {
  const XClient client(server.display(), terminal());
  useHotKey();
  port.waitForDials(1);
  EXPECT_EQ(port.dialled()[0], std::nullopt);
  expectNothingTyped(client);
}

TEST_F(Terminal, TheNextWindowIsReadAsUsual) {
  XClient client(server.display(), terminal());
  client.own("PRIMARY", answersWith("+49 30 1"));
  useHotKey();
  port.waitForDials(1);
  const XClient editor(server.display());
  useHotKey();
  expectDial(2);
}

TEST(CopyKeystrokeAtTheEnd, NothingIsStuckWhenTheProgramEnds) {
  const XServer server;
  Keyboard keyboard(server.display());
  const XClient client(server.display());
  {
    X11Port port(server.display());
    ASSERT_TRUE(port.registerHotKey(kVirtualD, kControlAlt));
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
